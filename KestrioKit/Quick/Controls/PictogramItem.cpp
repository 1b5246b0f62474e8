#include "KestrioKit/Quick/Controls/PictogramItem.h"

#include "KestrioKit/Core/Session/Pictograms.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <QPainter>

namespace KestrioKit::Quick {

namespace {

int drawingSize(PictogramItem::Shape shape) {
    switch (shape) {
    case PictogramItem::Cross:
        return screenMetrics.closeButtonSize;
    case PictogramItem::Thanks:
        return screenMetrics.thanksCircleSize;
    default:
        return screenMetrics.checkBoxDrawingSize;
    }
}

} // namespace

void PictogramItem::setPalette(const SurveyPalette &palette) {
    m_palette = palette;
    update();
    Q_EMIT changed();
}

void PictogramItem::paint(QPainter *painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->scale(width() / drawingSize(m_shape), height() / drawingSize(m_shape));
    switch (m_shape) {
    case Cross:
        return drawCross(*painter, m_palette);
    case UncheckedBox:
        return drawCheckBox(*painter, m_palette, false);
    case CheckedBox:
        return drawCheckBox(*painter, m_palette, true);
    case Thanks:
        return drawThanks(*painter, m_palette);
    }
}

} // namespace KestrioKit::Quick
