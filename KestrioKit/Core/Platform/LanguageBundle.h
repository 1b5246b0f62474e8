#pragma once

#include "KestrioKit/Core/Platform/Threads/Atomic.h"

#include <QString>
#include <QStringList>

#include <memory>

class QTranslator;

namespace KestrioKit {

/// Provides the library's texts in one language. Thread-safe.
class AnyLanguageBundle {
public:
    /// Uses `language` as `setLanguage()` does. If it is empty, uses the default language: the
    /// first of the user's languages that has texts, or English.
    explicit AnyLanguageBundle(const QString &language = {});
    Q_DISABLE_COPY_MOVE(AnyLanguageBundle)

    /// Returns the shared bundle. It uses the language of the last survey that the service
    /// returned.
    static AnyLanguageBundle &framework();

    /// Returns the names of the languages that have texts: "de", "pt-BR", …
    static const QStringList &languages();

    /// Switches to `language`, a locale name in any case, with "-" or "_". If there are no texts
    /// for this locale, the closest language is used: "de" for "de-AT", "zh-Hant" for "zh-TW",
    /// "zh-Hans" for other Chinese, "nb" for "no". If none is close enough or its texts cannot be
    /// read, the default language is used, according to the user's languages at this time.
    void setLanguage(const QString &language);

    /// Returns the text for `key`. If there is none, returns `value`, or `key` if `value` is empty.
    QString localizedString(const QString &key, const QString &value = {}) const;

private:
    Atomic<std::shared_ptr<const QTranslator>> m_table;
};

} // namespace KestrioKit
