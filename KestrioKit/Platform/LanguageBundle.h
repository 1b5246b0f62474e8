#pragma once

#include "KestrioKit/Platform/Atomic.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace KestrioKit {

/// The library's texts, in the language that was asked for. Thread-safe.
class AnyLanguageBundle {
public:
    AnyLanguageBundle() = default;
    Q_DISABLE_COPY_MOVE(AnyLanguageBundle)

    /// The bundle from which all survey screens take their texts.
    static AnyLanguageBundle &framework();

    /// The languages for which there are texts, by their folders' names: "de", "en", …
    static QStringList languages();

    /// Takes texts from `language` from now on: exactly one of `languages()`. For any other they
    /// come from the first of the user's languages that there are texts in.
    void setLanguage(const QString &language);

    /// The text for `key`. Without one: `value`, or where that is empty the key itself.
    QString localizedString(const QString &key, const QString &value = {}) const;

private:
    /// The chosen language's folder.
    Atomic<std::optional<QString>> m_path;
};

} // namespace KestrioKit
