#include "KestrioKit/Core/Protocol/ResponseConfig.h"

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype colorLength = 6;
constexpr int hexadecimal = 16;

bool isHexDigit(QChar character) {
    return (character >= u'0' && character <= u'9') || (character >= u'A' && character <= u'F');
}

/// Returns the number at the start of the text; absent if the text does not start with a digit.
std::optional<QRgb> scanHex(const QString &text) {
    const auto end = std::ranges::find_if_not(text, isHexDigit);
    bool scanned = false;
    const QRgb number = text.left(end - text.begin()).toUInt(&scanned, hexadecimal);
    return scanned ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<QColor> colorFromHex(const QString &text) {
    QString kept = text.toUpper();
    kept.removeIf([](QChar character) { return character < u'0' || character > u'F'; });
    if (kept.size() != colorLength)
        return std::nullopt;
    const std::optional<QRgb> rgb = scanHex(kept);
    return rgb ? std::optional(QColor::fromRgb(*rgb)) : std::nullopt;
}

std::optional<DisabledError> ResponseConfig::checkDisabled() const {
    if (!disabled)
        return std::nullopt;
    if (*disabled == "version"_L1)
        return DisabledError{DisabledError::version, {}};
    if (*disabled == "environment"_L1)
        return DisabledError{DisabledError::environment, {}};
    return DisabledError{DisabledError::other, *disabled};
}

std::optional<QColor> ResponseConfig::themeColor() const {
    return borderColorHex ? colorFromHex(*borderColorHex) : std::nullopt;
}

bool ResponseConfig::isDark() const {
    return theme == "dark"_L1;
}

} // namespace KestrioKit
