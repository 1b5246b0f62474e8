#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace KestrioKit {

/// Rounds `width`, in device-independent pixels, to a whole number of device pixels of `painter`,
/// at least one. A line of that width looks sharp.
qreal sharpWidth(const QPainter &painter, qreal width);

/// Returns `rect` without the device pixels of `painter` that it covers only partly.
QRectF sharpRect(const QPainter &painter, const QRectF &rect);

/// Draws a rounded border of `width` along the inner side of `rect`. All sizes are in
/// device-independent pixels.
void drawRoundedBorder(QPainter &painter, const QRectF &rect, qreal radius, qreal width,
                       const QColor &color);

/// Draws the ring that marks the focused control, a little inside `rect`.
void drawFocusRing(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color);

} // namespace KestrioKit
