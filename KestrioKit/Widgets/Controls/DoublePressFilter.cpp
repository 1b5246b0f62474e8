#include "KestrioKit/Widgets/Controls/DoublePressFilter.h"

#include <QKeyEvent>

namespace KestrioKit {

namespace {

// These are the keys that click a `Button`.
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

DoublePressFilter::DoublePressFilter(const QList<QAbstractButton *> &buttons, const Clock &clock,
                                     QObject *parent)
    : QObject(parent), m_presses(clock) {
    for (QAbstractButton *const button : buttons) {
        button->installEventFilter(this);
        connect(button, &QAbstractButton::clicked, this, [this] { m_presses.clicked(); });
    }
}

bool DoublePressFilter::eventFilter(QObject *watched, QEvent *event) {
    return isPress(*event) &&
           !m_presses.accept(watched, event->type() == QEvent::MouseButtonDblClick);
}

} // namespace KestrioKit
