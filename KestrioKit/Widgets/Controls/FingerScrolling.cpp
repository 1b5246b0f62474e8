#include "KestrioKit/Widgets/Controls/FingerScrolling.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QScroller>
#include <QTouchEvent>
#include <QWidget>
#include <QWindow>

namespace KestrioKit {

namespace {

/// A position outside all controls. A release there does not click the pressed control.
constexpr QPointF farAway(-10000, -10000);

} // namespace

FingerScrolling::FingerScrolling(QWidget *view)
    : QObject(view), m_view(view), m_scroller(QScroller::scroller(view)) {
    QScrollerProperties properties = m_scroller->scrollerProperties();
    for (const auto policy : {QScrollerProperties::HorizontalOvershootPolicy,
                              QScrollerProperties::VerticalOvershootPolicy})
        properties.setScrollMetric(policy, QScrollerProperties::OvershootAlwaysOff);
    m_scroller->setScrollerProperties(properties);
    view->installEventFilter(this);
}

// The window receives every touch. The view would receive only touches that it accepts, and Qt
// makes no clicks from those.
bool FingerScrolling::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::Show:
        if (watched == m_view && m_view->window()->windowHandle() != m_window) {
            m_window = m_view->window()->windowHandle();
            m_window->installEventFilter(this);
        }
        return false;
    case QEvent::TouchBegin:
        return begin(*static_cast<QTouchEvent *>(event));
    case QEvent::TouchUpdate:
        return move(*static_cast<QTouchEvent *>(event));
    case QEvent::TouchEnd:
        end(*static_cast<QTouchEvent *>(event));
        return false;
    // This event carries no position.
    case QEvent::TouchCancel:
        m_scroller->stop();
        m_isTracking = false;
        return false;
    default:
        return false;
    }
}

QPointF FingerScrolling::position(const QTouchEvent &event) const {
    return m_view->mapFrom(m_view->window(), event.points().first().position());
}

bool FingerScrolling::begin(const QTouchEvent &event) {
    m_isDragging = false;
    m_isTracking = event.pointCount() == 1 && m_view->isVisible() && m_view->isEnabled() &&
                   m_view->rect().contains(position(event).toPoint());
    if (!m_isTracking)
        return false;
    // A finger that stops a rolling view must not press a control.
    const bool isRolling = m_scroller->state() == QScroller::Scrolling;
    m_scroller->handleInput(QScroller::InputPress, position(event), qint64(event.timestamp()));
    return isRolling;
}

bool FingerScrolling::move(QTouchEvent &event) {
    if (!m_isTracking)
        return false;
    m_scroller->handleInput(QScroller::InputMove, position(event), qint64(event.timestamp()));
    if (m_scroller->state() != QScroller::Dragging)
        return m_isDragging;
    if (!m_isDragging)
        releaseMouse();
    m_isDragging = true;
    event.accept();
    return true;
}

// The caller passes the event on, because Qt has to release the mouse button.
void FingerScrolling::end(const QTouchEvent &event) {
    if (m_isTracking)
        m_scroller->handleInput(QScroller::InputRelease, position(event),
                                qint64(event.timestamp()));
    m_isTracking = false;
}

void FingerScrolling::releaseMouse() const {
    QMouseEvent release(QEvent::MouseButtonRelease, farAway, farAway, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(m_window, &release);
}

} // namespace KestrioKit
