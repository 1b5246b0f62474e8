#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"
#include "KestrioKit/Core/Protocol/DisabledError.h"

#include <QColor>
#include <QString>

#include <optional>

namespace KestrioKit {

/// The configuration of an environment, as the service answers. Malformed fields are absent.
struct ResponseConfig {
    /// "#rrggbb", with or without the "#".
    std::optional<QString> borderColorHex;
    std::optional<QString> theme;
    std::optional<float> volume;
    /// Why the library must stop: "version", "environment" or the service's own words.
    std::optional<QString> disabled;

    std::optional<DisabledError> checkDisabled() const;

    /// The tint of the surveys: `borderColorHex`, or black when that is absent or no colour.
    QColor themeColor() const;

    friend bool operator==(const ResponseConfig &, const ResponseConfig &) = default;
};

template <>
inline constexpr auto keyTable<ResponseConfig> = std::tuple(
    lenient("border", &ResponseConfig::borderColorHex), lenient("theme", &ResponseConfig::theme),
    lenient("volume", &ResponseConfig::volume), lenient("disabled", &ResponseConfig::disabled));

/// The opaque colour that six hexadecimal digits give as red, green and blue. Characters that come
/// before "0" or after "F" in Unicode are passed over, whatever their number. The seven that lie
/// between "9" and "A" count towards the six and end the number: ":12345" is no colour, and
/// "12:345" is the number 0x12.
std::optional<QColor> colorFromHex(const QString &text);

} // namespace KestrioKit
