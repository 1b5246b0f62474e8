#pragma once

#include <QJsonValue>
#include <QString>

#include <array>
#include <utility>

namespace KestrioKit {

/// The cases of an enumeration and the texts that stand for them in JSON.
template <typename Kind, std::size_t size>
using RawTexts = std::array<std::pair<Kind, QLatin1StringView>, size>;

/// The `Value` that a JSON text names: `kind` from the table; for an unknown name, or "invalid" in
/// place of what is no text, the case `other` with that text.
template <typename Value, std::size_t size>
Value valueForRawText(const RawTexts<typename Value::Kind, size> &names, const QJsonValue &json) {
    const QString text = json.toString(QStringLiteral("invalid"));
    for (const auto &[kind, name] : names) {
        if (name == text)
            return Value{kind, {}};
    }
    return Value{Value::Kind::other, text};
}

} // namespace KestrioKit
