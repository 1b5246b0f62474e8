#include "KestrioKit/Quick/Controls/PageDotsItem.h"

#include "KestrioKit/Core/Session/Pictograms.h"

namespace KestrioKit::Quick {

PageDotsItem::PageDotsItem() {
    connect(this, &PageDotsItem::changed, this, [this] { update(); });
}

void PageDotsItem::setPalette(const SurveyPalette &palette) {
    m_palette = palette;
    Q_EMIT changed();
}

void PageDotsItem::paint(QPainter *painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    drawPageDots(*painter, m_palette, size(), m_count, m_current, m_isMirrored);
}

} // namespace KestrioKit::Quick
