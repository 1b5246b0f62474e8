#pragma once

#include "KestrioKit/Core/Platform/Threads/Atomic.h"

#include <QString>
#include <QStringList>

#include <memory>

class QTranslator;

namespace KestrioKit {

/// The library's texts, in the language that was asked for. Thread-safe.
class AnyLanguageBundle {
public:
    /// Takes texts from the default language: the first of the user's languages that there are
    /// texts in, or else English.
    AnyLanguageBundle();
    Q_DISABLE_COPY_MOVE(AnyLanguageBundle)

    /// The bundle from which all survey screens take their texts.
    static AnyLanguageBundle &framework();

    /// The languages for which there are texts, by their folders' names: "de", "pt-BR", …
    static const QStringList &languages();

    /// Takes texts from `language` from now on, a locale's name in any case, with "-" or "_".
    /// Without a table of that name, the closest: "de" for "de-AT", "zh-Hant" for "zh-TW",
    /// "zh-Hans" for other Chinese, "nb" for "no". Where none suits, or the table cannot be read,
    /// the default language, as the user's languages are now.
    void setLanguage(const QString &language);

    /// Keeps the language that `holdLanguage()` was called with.
    using Hold = std::shared_ptr<const QTranslator>;

    /// Takes texts from `language`, found as above, for as long as the result lives, whatever
    /// `setLanguage()` is called with meanwhile. The hold that was made last counts.
    [[nodiscard]] Hold holdLanguage(const QString &language);

    /// The text for `key`. Without one: `value`, or where that is empty the key itself.
    QString localizedString(const QString &key, const QString &value = {}) const;

private:
    Atomic<std::shared_ptr<const QTranslator>> m_table;
    Atomic<std::weak_ptr<const QTranslator>> m_heldTable;
};

} // namespace KestrioKit
