#pragma once

#include <QColor>

namespace KestrioKit {

/// The minimum contrast of text with its background (WCAG 2.1, 1.4.3).
inline constexpr double leastTextContrast = 4.5;
/// The minimum contrast of controls and symbols with their background (WCAG 2.1, 1.4.11).
inline constexpr double leastSymbolContrast = 3;

/// Returns the contrast of two opaque colours as WCAG 2.1 defines it: from 1, for equal colours, to
/// 21.
double contrastRatio(const QColor &one, const QColor &other);

/// Returns the opaque colour between `from` and `to`. `part` goes from 0, for `from`, to 1, for
/// `to`.
QColor mixed(const QColor &from, const QColor &to, double part);

/// Returns black or white, whichever has more contrast with `background`. It is always at least
/// 4.5:1.
QColor strongestOn(const QColor &background);

/// Returns `color` if its contrast with `background` is at least `leastRatio`. Otherwise mixes it
/// with as little black or white as necessary. Every ratio up to 4.5 can be reached.
QColor shaded(const QColor &color, const QColor &background, double leastRatio);

} // namespace KestrioKit
