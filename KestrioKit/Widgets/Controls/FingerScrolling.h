#pragma once

#include <QObject>
#include <QPointer>

class QScroller;
class QTouchEvent;
class QWidget;
class QWindow;

namespace KestrioKit {

/// Has a finger scroll a view, through the view's `QScroller`: what was pressed on the view is let
/// go of as soon as the finger moves. Qt's own way (`QScroller::grabGesture`) leaks for every view.
class FingerScrolling final : public QObject {
    Q_OBJECT

public:
    /// `view` must answer `QScrollPrepareEvent` and `QScrollEvent`, and owns this.
    explicit FingerScrolling(QWidget *view);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool begin(const QTouchEvent &event);
    bool move(QTouchEvent &event);
    void end(const QTouchEvent &event);
    QPointF position(const QTouchEvent &event) const;
    void releaseMouse() const;

    QWidget *m_view;
    QScroller *m_scroller;
    QPointer<QWindow> m_window;
    bool m_isTracking = false;
    bool m_isDragging = false;
};

} // namespace KestrioKit
