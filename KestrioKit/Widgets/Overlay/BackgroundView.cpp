#include "KestrioKit/Widgets/Overlay/BackgroundView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace KestrioKit {

void BackgroundView::setAlpha(qreal alpha) {
    m_alpha = std::clamp<qreal>(alpha, 0, 1);
    update();
}

// The first click of a double-click may have triggered the survey.
void BackgroundView::mouseDoubleClickEvent(QMouseEvent *) {}

void BackgroundView::mousePressEvent(QMouseEvent *event) {
    m_isPressed = event->button() == Qt::LeftButton;
    m_pressedAt = event->position().toPoint();
}

// A longer movement is a drag or a swipe, wherever it ends.
void BackgroundView::mouseMoveEvent(QMouseEvent *event) {
    const QPoint way = event->position().toPoint() - m_pressedAt;
    if (way.manhattanLength() >= QApplication::startDragDistance())
        m_isPressed = false;
}

void BackgroundView::mouseReleaseEvent(QMouseEvent *event) {
    mouseMoveEvent(event);
    const bool isTap = m_isPressed && event->button() == Qt::LeftButton &&
                       parentWidget()->childAt(mapToParent(event->position().toPoint())) == this;
    m_isPressed = false;
    if (isTap)
        Q_EMIT tapped();
}

void BackgroundView::paintEvent(QPaintEvent *event) {
    QColor color = m_color;
    color.setAlphaF(float(m_color.alphaF() * m_alpha));
    QPainter painter(this);
    // Transparent areas of the host window stay transparent.
    if (window()->testAttribute(Qt::WA_TranslucentBackground))
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(event->rect(), color);
}

} // namespace KestrioKit
