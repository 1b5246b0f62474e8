#pragma once

/// Sizes that the survey screens share, in device-independent pixels.
namespace KestrioKit::KestrioUI {

/// Space around and between views.
namespace Padding {
inline constexpr int tiny = 8;
inline constexpr int regular = 16;
inline constexpr int medium = 32;
} // namespace Padding

/// Radii of rounded corners.
namespace CornerRadius {
inline constexpr int r3 = 3;
inline constexpr int r5 = 5;
} // namespace CornerRadius

/// Widths of border lines.
namespace BorderWidth {
inline constexpr int b1 = 1;
} // namespace BorderWidth

} // namespace KestrioKit::KestrioUI
