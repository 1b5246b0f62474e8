#pragma once

#include <QJsonValue>
#include <QString>

#include <algorithm>
#include <array>

namespace KestrioKit {

/// One case of an enumeration and the text that stands for it in JSON.
template <typename Kind>
struct RawText {
    Kind kind;
    QLatin1StringView text;
};

/// The `Value` that a JSON text names: `kind` from the table; for an unknown name, or "invalid" in
/// place of what is no text, the case `other` with that text.
template <typename Value, std::size_t size>
Value valueForRawText(const std::array<RawText<typename Value::Kind>, size> &names,
                      const QJsonValue &json) {
    const QString text = json.toString(QStringLiteral("invalid"));
    const auto known =
        std::ranges::find_if(names, [&](const auto &name) { return name.text == text; });
    if (known == names.end())
        return Value{Value::Kind::other, text};
    return Value{known->kind, {}};
}

} // namespace KestrioKit
