#pragma once

#include <QJsonValue>
#include <QString>

#include <array>
#include <utility>

namespace KestrioKit {

/// The values of an enumeration and their names in JSON.
template <typename Kind, std::size_t size>
using RawTexts = std::array<std::pair<Kind, QLatin1StringView>, size>;

/// Returns the `Value` whose name is the string `json`. For an unknown name, returns `other` with
/// that name. If `json` is not a string, returns `other` with the text "invalid".
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
