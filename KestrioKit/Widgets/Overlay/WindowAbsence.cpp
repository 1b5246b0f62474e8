#include "KestrioKit/Widgets/Overlay/WindowAbsence.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <QEvent>

namespace KestrioKit {

WindowAbsence::WindowAbsence(QObject *parent) : QObject(parent) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(screenMetrics.absence);
    connect(&m_timer, &QTimer::timeout, this, &WindowAbsence::lasted);
}

void WindowAbsence::watch(QWidget *window) {
    if (m_window)
        m_window->removeEventFilter(this);
    m_timer.stop();
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
}

bool WindowAbsence::eventFilter(QObject *watched, QEvent *event) {
    // A spontaneous event means that the system hides the window, for example because it is
    // minimized.
    if (event->type() == QEvent::Hide && !event->spontaneous()) {
        m_timer.start();
    } else if (event->type() == QEvent::Show && m_timer.isActive()) {
        m_timer.stop();
        Q_EMIT ended();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace KestrioKit
