#include "KestrioKit/Widgets/Controls/ScrollIndicator.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/ScrollView.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr qreal thumbBreadth = screenMetrics.scrollThumbBreadth;
constexpr qreal leastThumbLength = screenMetrics.leastScrollThumbLength;
} // namespace Constant

} // namespace

ScrollIndicator::ScrollIndicator(ScrollView &view, const SurveyColors &colors)
    : m_view(view), m_colors(colors) {
    connect(&view, &ScrollView::scrolled, this, &ScrollIndicator::follow);
    follow();
}

void ScrollIndicator::follow() {
    setVisible(m_view.maximumOffset() > 0);
    update();
}

QRectF ScrollIndicator::thumb() const {
    const qreal maximum = m_view.maximumOffset();
    const qreal length =
        std::min<qreal>(std::max(height() * m_view.height() / (m_view.height() + maximum),
                                 Constant::leastThumbLength),
                        height());
    const qreal top = maximum > 0 ? (height() - length) * m_view.offset() / maximum : 0;
    return {(width() - Constant::thumbBreadth) / 2, top, Constant::thumbBreadth, length};
}

void ScrollIndicator::mousePressEvent(QMouseEvent *event) {
    const QRectF bar = thumb();
    const qreal y = event->position().y();
    m_grip = y >= bar.top() && y <= bar.bottom() ? y - bar.top() : bar.height() / 2;
    mouseMoveEvent(event);
}

void ScrollIndicator::mouseMoveEvent(QMouseEvent *event) {
    const qreal way = height() - thumb().height();
    if (way > 0)
        m_view.setOffset(qRound((event->position().y() - m_grip) / way * m_view.maximumOffset()));
}

void ScrollIndicator::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors->symbol);
    painter.drawRoundedRect(thumb(), Constant::thumbBreadth / 2, Constant::thumbBreadth / 2);
}

} // namespace KestrioKit
