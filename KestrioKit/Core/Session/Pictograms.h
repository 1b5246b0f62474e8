#pragma once

#include "KestrioKit/KestrioKitExport.h"
#include "KestrioKit/SurveyPalette.h"

#include <QPainter>

namespace KestrioKit {

/// Draw the small pictures on the card, from the origin in the painter's coordinates. The painter
/// must have anti-aliasing enabled.

/// The cross of the close button, in a square of `ScreenMetrics::closeButtonSize`.
KESTRIOKIT_EXPORT void drawCross(QPainter &painter, const SurveyPalette &palette);
/// A check box, in a square of `ScreenMetrics::checkBoxDrawingSize`.
KESTRIOKIT_EXPORT void drawCheckBox(QPainter &painter, const SurveyPalette &palette,
                                    bool isChecked);
/// A check mark in a circle, in a square of `ScreenMetrics::thanksCircleSize`.
KESTRIOKIT_EXPORT void drawThanks(QPainter &painter, const SurveyPalette &palette);
/// A dot for each of `pages` pages, centred in an area of that size. If there is no space for all,
/// only those around `currentPage` are drawn. Pages count from 0.
KESTRIOKIT_EXPORT void drawPageDots(QPainter &painter, const SurveyPalette &palette,
                                    const QSizeF &area, int pages, int currentPage,
                                    bool isMirrored);

} // namespace KestrioKit
