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
    /// Takes texts from `language`, as `setLanguage()` does; without one, from the default
    /// language: the first of the user's languages that there are texts in, or else English.
    explicit AnyLanguageBundle(const QString &language = {});
    Q_DISABLE_COPY_MOVE(AnyLanguageBundle)

    /// The bundle that speaks the language of the last survey that the service answered with.
    static AnyLanguageBundle &framework();

    /// The languages for which there are texts, by their folders' names: "de", "pt-BR", …
    static const QStringList &languages();

    /// Takes texts from `language` from now on, a locale's name in any case, with "-" or "_".
    /// Without a table of that name, the closest: "de" for "de-AT", "zh-Hant" for "zh-TW",
    /// "zh-Hans" for other Chinese, "nb" for "no". Where none suits, or the table cannot be read,
    /// the default language, as the user's languages are now.
    void setLanguage(const QString &language);

    /// The text for `key`. Without one: `value`, or where that is empty the key itself.
    QString localizedString(const QString &key, const QString &value = {}) const;

private:
    Atomic<std::shared_ptr<const QTranslator>> m_table;
};

} // namespace KestrioKit
