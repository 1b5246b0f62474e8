#include "KestrioKit/Core/Session/Pictograms.h"

#include "KestrioKit/Core/Session/PageDots.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <array>
#include <span>

namespace KestrioKit {

namespace {

/// Draws straight lines of `width` from each point to the next.
void drawStrokes(QPainter &painter, std::span<const QPointF> points, qreal width,
                 const QColor &color) {
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.drawPolyline(points.data(), int(points.size()));
}

QRectF square(int size, int inset) {
    return QRectF(0, 0, size, size).adjusted(inset, inset, -inset, -inset);
}

} // namespace

void drawCross(QPainter &painter, const SurveyPalette &palette) {
    constexpr qreal start = screenMetrics.crossInset;
    constexpr qreal end = screenMetrics.closeButtonSize - start;
    constexpr std::array falling{QPointF(start, start), QPointF(end, end)};
    constexpr std::array rising{QPointF(end, start), QPointF(start, end)};
    drawStrokes(painter, falling, screenMetrics.closeButtonLineWidth, palette.symbol);
    drawStrokes(painter, rising, screenMetrics.closeButtonLineWidth, palette.symbol);
}

void drawCheckBox(QPainter &painter, const SurveyPalette &palette, bool isChecked) {
    const int lineWidth = palette.keepsContrast ? screenMetrics.contrastCheckBoxLineWidth
                                                : screenMetrics.checkBoxLineWidth;
    painter.setPen(QPen(isChecked ? palette.accent : palette.controlBorder, lineWidth));
    painter.setBrush(isChecked ? palette.accent : palette.card);
    painter.drawRoundedRect(
        square(screenMetrics.checkBoxDrawingSize, screenMetrics.checkBoxDrawingInset),
        screenMetrics.smallRadius, screenMetrics.smallRadius);
    if (isChecked)
        drawStrokes(painter, screenMetrics.checkMark, lineWidth, palette.textOnAccent);
}

void drawThanks(QPainter &painter, const SurveyPalette &palette) {
    painter.setPen(QPen(palette.accent, screenMetrics.thanksLineWidth));
    painter.drawEllipse(square(screenMetrics.thanksCircleSize, screenMetrics.thanksLineWidth));
    drawStrokes(painter, screenMetrics.thanksCheckMark, screenMetrics.thanksLineWidth,
                palette.accent);
}

void drawPageDots(QPainter &painter, const SurveyPalette &palette, const QSizeF &area, int pages,
                  int currentPage, bool isMirrored) {
    const PageDots dots = PageDots::within(int(area.width()), pages, currentPage);
    const qreal margin = (area.width() - dots.shown * screenMetrics.dotPitch) / 2;
    painter.setPen(Qt::NoPen);
    for (int place = 0; place < dots.shown; ++place) {
        const int page = dots.first + (isMirrored ? dots.shown - 1 - place : place);
        painter.setBrush(page == currentPage ? palette.accent : palette.dot);
        const QPointF middle(margin + (place + 0.5) * screenMetrics.dotPitch, area.height() / 2);
        const qreal radius =
            (dots.isEdge(page) ? screenMetrics.edgeDotSize : screenMetrics.dotSize) / 2.0;
        painter.drawEllipse(middle, radius, radius);
    }
}

} // namespace KestrioKit
