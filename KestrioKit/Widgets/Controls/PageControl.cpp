#include "KestrioKit/Widgets/Controls/PageControl.h"

#include "KestrioKit/Core/Session/Pictograms.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/AccessibleRole.h"

#include <QPainter>

#include <algorithm>

namespace KestrioKit {

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
    return {m_numberOfPages * screenMetrics.dotPitch, screenMetrics.pageControlHeight};
}

void PageControl::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawPageDots(painter, m_colors.palette(), size(), m_numberOfPages, m_currentPage,
                 layoutDirection() == Qt::RightToLeft);
}

} // namespace KestrioKit
