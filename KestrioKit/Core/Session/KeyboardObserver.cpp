#include "KestrioKit/Core/Session/KeyboardObserver.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QRectF>

#include <algorithm>

namespace KestrioKit {

namespace {

/// Returns the input method, or null while no window has the focus. On Wayland without a seat no
/// window ever has the focus, and every call to Qt's input method would dereference the null seat.
QInputMethod *focusedInputMethod() {
    return QGuiApplication::focusWindow() ? QGuiApplication::inputMethod() : nullptr;
}

} // namespace

KeyboardObserver::KeyboardObserver() {
    const QInputMethod *const inputMethod = QGuiApplication::inputMethod();
    connect(inputMethod, &QInputMethod::visibleChanged, this, &KeyboardObserver::changed);
    connect(inputMethod, &QInputMethod::keyboardRectangleChanged, this, &KeyboardObserver::changed);
}

int KeyboardObserver::coveredHeight(int windowHeight) {
    const QInputMethod *const inputMethod = focusedInputMethod();
    if (!inputMethod || !inputMethod->isVisible())
        return 0;
    const QRectF keyboard = inputMethod->keyboardRectangle();
    return keyboard.isEmpty() ? 0 : std::max(windowHeight - qRound(keyboard.top()), 0);
}

void KeyboardObserver::commit() {
    if (QInputMethod *const inputMethod = focusedInputMethod())
        inputMethod->commit();
}

void KeyboardObserver::hide() {
    QInputMethod *const inputMethod = focusedInputMethod();
    if (inputMethod && inputMethod->isVisible())
        inputMethod->hide();
}

} // namespace KestrioKit
