#include "KestrioKit/Quick/Controls/PressGuard.h"

#include <QKeyEvent>

namespace KestrioKit::Quick {

namespace {

// These are the keys that click a button.
bool isClickingKey(int key) {
    return key == Qt::Key_Space || key == Qt::Key_Select || key == Qt::Key_Return ||
           key == Qt::Key_Enter;
}

bool isPress(const QEvent &event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return true;
    case QEvent::KeyPress:
        return isClickingKey(static_cast<const QKeyEvent &>(event).key());
    default:
        return false;
    }
}

} // namespace

bool PressGuard::ignores(const QObject &button, const QEvent &event) {
    return isPress(event) && !m_rule.accept(&button, event.type() == QEvent::MouseButtonDblClick);
}

} // namespace KestrioKit::Quick
