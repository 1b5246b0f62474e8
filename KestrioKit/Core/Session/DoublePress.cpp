#include "KestrioKit/Core/Session/DoublePress.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QStyleHints>

#include <chrono>

namespace KestrioKit {

namespace {

// These are the keys that click a button.
bool isPress(int key) {
    return key == Qt::Key_Space || key == Qt::Key_Select || key == Qt::Key_Return ||
           key == Qt::Key_Enter;
}

bool isPress(const QEvent &event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return true;
    case QEvent::KeyPress:
        return isPress(static_cast<const QKeyEvent &>(event).key());
    default:
        return false;
    }
}

} // namespace

bool DoublePress::isSecond(const QObject *control, bool isDoubleClick) const {
    if (!m_hasClicked || control != m_pressed)
        return false;
    const std::chrono::milliseconds interval(
        QGuiApplication::styleHints()->mouseDoubleClickInterval());
    // The platform recognizes a double-click correctly even if its events are delivered late.
    return isDoubleClick || m_clock.now().sinceReference < m_pressedAt.sinceReference + interval;
}

bool DoublePress::refuses(const QObject *control, const QEvent &event) {
    if (!isPress(event))
        return false;
    if (isSecond(control, event.type() == QEvent::MouseButtonDblClick))
        return true;
    m_pressed = control;
    m_pressedAt = m_clock.now();
    m_hasClicked = false;
    return false;
}

} // namespace KestrioKit
