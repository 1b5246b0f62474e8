#include "KestrioKit/Widgets/Controls/PageControl.h"

#include "KestrioKit/Core/Session/PageDots.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/AccessibleRole.h"

#include <QPainter>

#include <algorithm>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr int pitch = screenMetrics.dotPitch;
} // namespace Constant

} // namespace

PageControl::PageControl(int numberOfPages, SurveyTexts texts, const SurveyColors &colors)
    : m_numberOfPages(numberOfPages), m_texts(std::move(texts)), m_colors(colors) {
    // No value is set, because a screen reader would read it as a percentage.
    setAccessibleRole(this, QAccessible::ProgressBar);
    describe();
}

void PageControl::setCurrentPage(int page) {
    m_currentPage = std::clamp(page, 0, std::max(m_numberOfPages - 1, 0));
    describe();
    update();
}

void PageControl::describe() {
    setAccessibleName(m_texts.position(m_currentPage + 1, m_numberOfPages));
}

QSize PageControl::sizeHint() const {
    return {m_numberOfPages * Constant::pitch, screenMetrics.pageControlHeight};
}

void PageControl::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const PageDots dots = PageDots::within(width(), m_numberOfPages, m_currentPage);
    const qreal margin = (width() - dots.shown * Constant::pitch) / 2.0;
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    for (int place = 0; place < dots.shown; ++place) {
        const int page = dots.first + (isMirrored ? dots.shown - 1 - place : place);
        painter.setBrush(page == m_currentPage ? m_colors->accent : m_colors->dot);
        const QPointF middle(margin + (place + 0.5) * Constant::pitch, height() / 2.0);
        const qreal radius =
            (dots.isEdge(page) ? screenMetrics.edgeDotSize : screenMetrics.dotSize) / 2.0;
        painter.drawEllipse(middle, radius, radius);
    }
}

} // namespace KestrioKit
