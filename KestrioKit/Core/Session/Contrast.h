#pragma once

#include <QColor>

namespace KestrioKit {

/// The least contrast of text with its background (WCAG 2.1, 1.4.3).
inline constexpr double leastTextContrast = 4.5;
/// The least contrast of controls and symbols with what they lie on (WCAG 2.1, 1.4.11).
inline constexpr double leastSymbolContrast = 3;

/// The contrast of two opaque colours by WCAG 2.1: from 1, for the same colour, to 21.
double contrastRatio(const QColor &one, const QColor &other);

/// The opaque colour on the way from `from` to `to`; `part` is from 0 to 1.
QColor mixed(const QColor &from, const QColor &to, double part);

/// Black or white, whichever has more contrast with `background`. It is always at least 4.5:1.
QColor strongestOn(const QColor &background);

/// The colour itself if its contrast with `background` is at least `leastRatio`. Otherwise it is
/// mixed with as little black or white as that takes; any ratio up to 4.5 can be reached.
QColor shaded(const QColor &color, const QColor &background, double leastRatio);

} // namespace KestrioKit
