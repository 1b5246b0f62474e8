#include "KestrioKit/Core/Session/DoublePress.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <chrono>

namespace KestrioKit {

bool DoublePress::isSecond(const QObject *control, bool isDoubleClick) const {
    if (!m_hasClicked || control != m_pressed)
        return false;
    const std::chrono::milliseconds interval(
        QGuiApplication::styleHints()->mouseDoubleClickInterval());
    // The platform recognizes a double-click correctly even if its events are delivered late.
    return isDoubleClick || m_clock.now().sinceReference < m_pressedAt.sinceReference + interval;
}

bool DoublePress::accept(const QObject *control, bool isDoubleClick) {
    if (isSecond(control, isDoubleClick))
        return false;
    m_pressed = control;
    m_pressedAt = m_clock.now();
    m_hasClicked = false;
    return true;
}

} // namespace KestrioKit
