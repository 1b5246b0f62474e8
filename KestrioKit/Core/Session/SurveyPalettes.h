#pragma once

#include "KestrioKit/SurveyAppearance.h"
#include "KestrioKit/SurveyPalette.h"

#include <QPalette>

namespace KestrioKit {

/// The accent colour when the service's configuration gives none.
QColor defaultAccent();

/// The palettes of the appearances, for the service's accent colour.
SurveyPalette lightPalette(const QColor &accent);
SurveyPalette darkPalette(const QColor &accent);
SurveyPalette systemPalette(const QPalette &host, const QColor &accent);

/// The palette for that appearance now; `service` has been resolved before. `system` is light in a
/// program without a `QGuiApplication`.
SurveyPalette paletteFor(SurveyAppearance appearance, const QColor &accent);

} // namespace KestrioKit
