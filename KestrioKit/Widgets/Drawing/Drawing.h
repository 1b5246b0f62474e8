#pragma once

#include <QColor>

#include <initializer_list>

class QPainter;

namespace KestrioKit {

/// `width` in device-independent pixels, made a whole number of the painter's own, so that a line
/// of that width is sharp.
qreal sharpWidth(const QPainter &painter, qreal width);

/// `rect` without the pixels of the painter's that it covers in part.
QRectF sharpRect(const QPainter &painter, const QRectF &rect);

/// A border of `width` along the inner side of `rect`.
void drawRoundedBorder(QPainter &painter, const QRectF &rect, qreal radius, qreal width,
                       const QColor &color);

/// Straight strokes from each point to the next.
void drawStrokes(QPainter &painter, std::initializer_list<QPointF> points, qreal width,
                 const QColor &color);

/// Tells where the focus is, within `rect`.
void drawFocusRing(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color);

} // namespace KestrioKit
