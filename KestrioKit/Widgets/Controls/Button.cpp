#include "KestrioKit/Widgets/Controls/Button.h"

#include <QKeyEvent>

namespace KestrioKit {

namespace {

bool isFromKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

} // namespace

Button::Button(const QString &title) {
    setText(title);
    // The base class creates a shortcut from an ampersand in the title.
    setShortcut({});
    setAccessibleName(title);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::pressed, this, &Button::highlightedChanged);
    connect(this, &QAbstractButton::released, this, &Button::highlightedChanged);
}

void Button::focusInEvent(QFocusEvent *event) {
    m_focusIsVisible = isFromKeyboard(event->reason()) ||
                       (m_focusIsVisible && event->reason() == Qt::ActiveWindowFocusReason);
    QAbstractButton::focusInEvent(event);
}

void Button::keyPressEvent(QKeyEvent *event) {
    m_focusIsVisible = true;
    update();
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        return;
    case Qt::Key_Space:
    case Qt::Key_Select:
        QAbstractButton::keyPressEvent(event);
        return;
    default:
        event->ignore();
    }
}

} // namespace KestrioKit
