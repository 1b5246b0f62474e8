#include "KestrioKit/UI/KeyboardObserver.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QRectF>

#include <algorithm>

namespace KestrioKit {

KeyboardObserver::KeyboardObserver() {
    const QInputMethod *const inputMethod = QGuiApplication::inputMethod();
    connect(inputMethod, &QInputMethod::visibleChanged, this, &KeyboardObserver::changed);
    connect(inputMethod, &QInputMethod::keyboardRectangleChanged, this, &KeyboardObserver::changed);
}

int KeyboardObserver::coveredHeight(int windowHeight) {
    const QInputMethod *const inputMethod = QGuiApplication::inputMethod();
    const QRectF keyboard = inputMethod->keyboardRectangle();
    if (!inputMethod->isVisible() || keyboard.isEmpty())
        return 0;
    return std::max(windowHeight - qRound(keyboard.top()), 0);
}

} // namespace KestrioKit
