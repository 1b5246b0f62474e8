#include "KestrioKit/Quick/Overlay/WindowAbsence.h"

namespace KestrioKit::Quick {

using namespace std::chrono_literals;

namespace {

constexpr auto patience = 2s;

} // namespace

WindowAbsence::WindowAbsence(QObject *parent) : QObject(parent) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(patience);
    connect(&m_timer, &QTimer::timeout, this, &WindowAbsence::lasted);
}

void WindowAbsence::watch(QWindow *window) {
    if (m_window)
        m_window->disconnect(this);
    m_timer.stop();
    m_window = window;
    if (!m_window)
        return;
    connect(m_window, &QWindow::visibleChanged, this, &WindowAbsence::visibleChanged);
    connect(m_window, &QObject::destroyed, this, &WindowAbsence::lasted);
}

void WindowAbsence::visibleChanged(bool isVisible) {
    if (!isVisible) {
        m_timer.start();
    } else if (m_timer.isActive()) {
        m_timer.stop();
        Q_EMIT ended();
    }
}

} // namespace KestrioKit::Quick
