#pragma once

#include <QColor>

/// What the survey screens share. Sizes are in device-independent pixels.
namespace KestrioKit::KestrioUI {

namespace Padding {
inline constexpr int tiny = 8;
inline constexpr int regular = 16;
inline constexpr int medium = 32;
} // namespace Padding

namespace CornerRadius {
inline constexpr int r3 = 3;
inline constexpr int r5 = 5;
} // namespace CornerRadius

namespace BorderWidth {
inline constexpr int b1 = 1;
} // namespace BorderWidth

namespace Color {

inline QColor text() {
    return QColor::fromRgbF(0.15F, 0.13F, 0.21F);
}

inline QColor inactive() {
    return QColor::fromRgbF(0.69F, 0.69F, 0.69F);
}

/// The theme colour when the service's configuration gives none.
inline QColor defaultTheme() {
    return QColor::fromRgbF(0, 0, 0);
}

} // namespace Color

} // namespace KestrioKit::KestrioUI
