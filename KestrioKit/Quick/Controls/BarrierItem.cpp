#include "KestrioKit/Quick/Controls/BarrierItem.h"

#include <QCursor>
#include <QGuiApplication>
#include <QStyleHints>

namespace KestrioKit::Quick {

BarrierItem::BarrierItem() {
    setAcceptedMouseButtons(Qt::AllButtons);
    setAcceptHoverEvents(true);
    setCursor(Qt::ArrowCursor);
}

void BarrierItem::mousePressEvent(QMouseEvent *event) {
    m_isPressed = event->button() == Qt::LeftButton;
    m_pressedAt = event->position();
    event->accept();
}

// The first click of a double-click may have triggered the survey.
void BarrierItem::mouseDoubleClickEvent(QMouseEvent *event) {
    event->accept();
}

// A longer movement is a drag or a swipe, wherever it ends.
void BarrierItem::mouseMoveEvent(QMouseEvent *event) {
    const QPointF way = event->position() - m_pressedAt;
    if (way.manhattanLength() >= QGuiApplication::styleHints()->startDragDistance())
        m_isPressed = false;
}

void BarrierItem::mouseReleaseEvent(QMouseEvent *event) {
    mouseMoveEvent(event);
    const bool isTap = m_isPressed && event->button() == Qt::LeftButton;
    m_isPressed = false;
    if (isTap)
        Q_EMIT tapped();
}

} // namespace KestrioKit::Quick
