#include "KestrioKit/Widgets/Controls/ScrollView.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/FingerScrolling.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QApplication>
#include <QPainter>
#include <QScrollPrepareEvent>
#include <QWheelEvent>

#include <algorithm>

namespace KestrioKit {

namespace {

/// Angle of one wheel step, in eighths of a degree as in `QWheelEvent::angleDelta()`.
constexpr int anglePerStep = QWheelEvent::DefaultDeltasPerStep;
constexpr int pixelsPerLine = screenMetrics.scrollLine;
constexpr int revealMargin = screenMetrics.revealMargin;

qreal distance(const QWheelEvent &event) {
    if (!event.pixelDelta().isNull())
        return event.pixelDelta().y();
    const qreal steps = qreal(event.angleDelta().y()) / anglePerStep;
    return steps * QApplication::wheelScrollLines() * pixelsPerLine;
}

} // namespace

ScrollView::ScrollView(const SurveyColors &colors) : m_colors(colors) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    new FingerScrolling(this);
}

void ScrollView::setContent(QWidget *content) {
    m_content = content;
    m_offset = 0;
    content->setParent(this);
    layOut();
    content->show();
}

int ScrollView::contentHeight(int width) const {
    return m_content ? m_content->heightForWidth(width) : 0;
}

int ScrollView::maximumOffset() const {
    return m_content ? std::max(m_content->height() - height(), 0) : 0;
}

void ScrollView::setOffset(int offset) {
    m_offset = std::clamp(offset, 0, maximumOffset());
    if (m_content)
        m_content->move(0, -m_offset);
    Q_EMIT scrolled();
}

void ScrollView::scroll(int key) {
    switch (key) {
    case Qt::Key_PageUp:
        setOffset(m_offset - height());
        break;
    case Qt::Key_PageDown:
        setOffset(m_offset + height());
        break;
    case Qt::Key_Up:
        setOffset(m_offset - pixelsPerLine);
        break;
    case Qt::Key_Down:
        setOffset(m_offset + pixelsPerLine);
        break;
    case Qt::Key_Home:
        setOffset(0);
        break;
    case Qt::Key_End:
        setOffset(maximumOffset());
        break;
    default:
        break;
    }
}

void ScrollView::reveal(const QWidget *view) {
    if (!m_content || !m_content->isAncestorOf(view))
        return;
    const int top = view->mapTo(m_content, QPoint()).y() - revealMargin;
    const int bottom = top + view->height() + 2 * revealMargin;
    if (top < m_offset || view->height() > height())
        setOffset(top);
    else if (bottom > m_offset + height())
        setOffset(bottom - height());
}

void ScrollView::layOut() {
    if (!m_content)
        return;
    m_content->resize(width(), contentHeight(width()));
    setOffset(m_offset);
}

bool ScrollView::event(QEvent *event) {
    return scrollWithFinger(event) || QWidget::event(event);
}

bool ScrollView::scrollWithFinger(QEvent *event) {
    if (event->type() == QEvent::ScrollPrepare) {
        if (maximumOffset() == 0)
            return false;
        auto *const prepare = static_cast<QScrollPrepareEvent *>(event);
        prepare->setViewportSize(size());
        prepare->setContentPosRange(QRectF(0, 0, 0, maximumOffset()));
        prepare->setContentPos(QPointF(0, m_offset));
        prepare->accept();
        return true;
    }
    if (event->type() == QEvent::Scroll) {
        const auto *const scrollEvent = static_cast<QScrollEvent *>(event);
        setOffset(qRound(scrollEvent->contentPos().y()));
        return true;
    }
    return false;
}

void ScrollView::paintEvent(QPaintEvent *event) {
    QPainter(this).fillRect(event->rect(), m_colors->card);
}

void ScrollView::resizeEvent(QResizeEvent *) {
    layOut();
}

void ScrollView::wheelEvent(QWheelEvent *event) {
    const qreal turned = distance(*event);
    // The remainder is dropped when the wheel changes direction.
    if (turned * m_wheelRemainder < 0)
        m_wheelRemainder = 0;
    m_wheelRemainder += turned;
    const int whole = int(m_wheelRemainder);
    m_wheelRemainder -= whole;
    setOffset(m_offset - whole);
}

} // namespace KestrioKit
