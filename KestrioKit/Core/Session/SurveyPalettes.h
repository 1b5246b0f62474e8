#pragma once

#include "KestrioKit/SurveyAppearance.h"
#include "KestrioKit/SurveyPalette.h"

#include <QPalette>

namespace KestrioKit {

/// Returns the accent colour for a service configuration without one.
QColor defaultAccent();

/// Return the palettes of the appearances, made from the service's accent colour.
SurveyPalette lightPalette(const QColor &accent);
SurveyPalette darkPalette(const QColor &accent);
SurveyPalette systemPalette(const QPalette &host, const QColor &accent);

/// Returns the palette that the appearance has now. `appearance` must not be `service`. In a
/// program without a `QGuiApplication`, `system` is the same as `light`.
SurveyPalette paletteFor(SurveyAppearance appearance, const QColor &accent);

} // namespace KestrioKit
