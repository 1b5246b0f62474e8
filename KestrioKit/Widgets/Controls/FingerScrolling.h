#pragma once

#include <QObject>
#include <QPointer>

class QScroller;
class QTouchEvent;
class QWidget;
class QWindow;

namespace KestrioKit {

/// Lets a finger scroll a view through the view's `QScroller`. A control that was pressed on the
/// view is released without a click as soon as the finger drags. `QScroller::grabGesture()` is not
/// used because it leaks memory for every view. Use it on the main thread only.
class FingerScrolling final : public QObject {
    Q_OBJECT

public:
    /// `view` owns this object. It must handle `QScrollPrepareEvent` and `QScrollEvent`.
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
