#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace KestrioKit::Quick {

/// An item that keeps all pointer input from what lies under it, and reports taps. Use it on the
/// main thread only.
class BarrierItem : public QQuickItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(KestrioBarrier)

public:
    BarrierItem();

Q_SIGNALS:
    /// Emitted when the left button is pressed and released on the item without a drag.
    void tapped();

protected:
    void hoverEnterEvent(QHoverEvent *event) override { event->accept(); }
    void hoverMoveEvent(QHoverEvent *event) override { event->accept(); }
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override { event->accept(); }

private:
    /// Where the mouse was last pressed, in the item's coordinates.
    QPointF m_pressedAt;
    /// Whether a release would still count as a tap.
    bool m_isPressed = false;
};

} // namespace KestrioKit::Quick
