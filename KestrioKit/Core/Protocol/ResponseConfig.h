#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"
#include "KestrioKit/Core/Protocol/DisabledError.h"

#include <QColor>
#include <QString>

#include <optional>

namespace KestrioKit {

/// The configuration of an environment, as the service returns it. Malformed fields are absent.
///
///     {"border":"#3B5BDB","theme":"light","volume":0.5}
struct ResponseConfig {
    /// The surveys' tint as "#rrggbb"; the "#" may be missing. See `colorFromHex()`.
    std::optional<QString> borderColorHex;
    std::optional<QString> theme;
    std::optional<float> volume;
    /// The reason why the library must stop sending: "version", "environment" or the service's own
    /// text. Absent if the library may be used.
    std::optional<QString> disabled;

    /// Returns `disabled` as an error; absent if the library may be used.
    std::optional<DisabledError> checkDisabled() const;

    /// Returns the accent colour of surveys, `borderColorHex`. Absent if that is absent or not a
    /// colour.
    std::optional<QColor> themeColor() const;

    /// Returns whether the service asks for dark surveys: `theme` is "dark".
    bool isDark() const;

    friend bool operator==(const ResponseConfig &, const ResponseConfig &) = default;
};

template <>
inline constexpr auto keyTable<ResponseConfig> = std::tuple(
    lenient("border", &ResponseConfig::borderColorHex), lenient("theme", &ResponseConfig::theme),
    lenient("volume", &ResponseConfig::volume), lenient("disabled", &ResponseConfig::disabled));

/// Returns the opaque colour that six hexadecimal digits encode as red, green and blue; absent if
/// the text is not a colour. Case does not matter. Characters before "0" or after "F" in Unicode
/// are ignored. The seven characters between "9" and "A" are not ignored: they count towards the
/// six, and the number ends at the first of them. So ":12345" is not a colour, and "12:345" is the
/// number 0x12.
std::optional<QColor> colorFromHex(const QString &text);

} // namespace KestrioKit
