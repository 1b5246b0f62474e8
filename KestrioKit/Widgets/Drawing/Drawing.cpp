#include "KestrioKit/Widgets/Drawing/Drawing.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace KestrioKit {

qreal sharpWidth(const QPainter &painter, qreal width) {
    const qreal ratio = painter.device()->devicePixelRatio();
    return std::max<qreal>(qRound(width * ratio), 1) / ratio;
}

QRectF sharpRect(const QPainter &painter, const QRectF &rect) {
    const QTransform toDevice = painter.deviceTransform();
    const QRectF pixels = toDevice.mapRect(rect);
    const QPointF topLeft(std::ceil(pixels.left()), std::ceil(pixels.top()));
    const QPointF bottomRight(std::floor(pixels.right()), std::floor(pixels.bottom()));
    return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}

void drawRoundedBorder(QPainter &painter, const QRectF &rect, qreal radius, qreal width,
                       const QColor &color) {
    const qreal pen = sharpWidth(painter, width);
    const qreal inset = pen / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, pen));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(sharpRect(painter, rect).adjusted(inset, inset, -inset, -inset),
                            radius - inset, radius - inset);
}

void drawFocusRing(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color) {
    constexpr qreal inset = screenMetrics.focusRingInset;
    drawRoundedBorder(painter, rect.adjusted(inset, inset, -inset, -inset), radius,
                      screenMetrics.focusRingWidth, color);
}

} // namespace KestrioKit
