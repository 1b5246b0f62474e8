#include "KestrioKit/Quick/Controls/ButtonItem.h"

#include <QCursor>

namespace KestrioKit::Quick {

namespace {

bool isFromKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

bool isHeldKey(int key) {
    return key == Qt::Key_Space || key == Qt::Key_Select;
}

} // namespace

ButtonItem::ButtonItem() {
    setAcceptedMouseButtons(Qt::LeftButton);
    setActiveFocusOnTab(true);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QQuickItem::activeFocusChanged, this, &ButtonItem::focusVisibleChanged);
}

bool ButtonItem::event(QEvent *event) {
    if (m_guard && m_guard->ignores(*this, *event)) {
        event->accept();
        return true;
    }
    return QQuickItem::event(event);
}

void ButtonItem::click() {
    if (m_guard)
        m_guard->clicked();
    Q_EMIT clicked();
}

void ButtonItem::setPressed(bool isPressed) {
    if (std::exchange(m_isPressed, isPressed) != isPressed)
        Q_EMIT pressedChanged();
}

void ButtonItem::setFocusVisible(bool isVisible) {
    if (std::exchange(m_focusIsVisible, isVisible) != isVisible)
        Q_EMIT focusVisibleChanged();
}

// Keyboard

void ButtonItem::focusInEvent(QFocusEvent *event) {
    setFocusVisible(isFromKeyboard(event->reason()) ||
                    (m_focusIsVisible && event->reason() == Qt::ActiveWindowFocusReason));
    QQuickItem::focusInEvent(event);
}

void ButtonItem::focusOutEvent(QFocusEvent *event) {
    setPressed(false);
    QQuickItem::focusOutEvent(event);
}

void ButtonItem::keyPressEvent(QKeyEvent *event) {
    setFocusVisible(true);
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    event->setAccepted(isEnter || isHeldKey(event->key()));
    if (event->isAutoRepeat())
        return;
    if (isEnter)
        click();
    else if (isHeldKey(event->key()))
        setPressed(true);
}

void ButtonItem::keyReleaseEvent(QKeyEvent *event) {
    event->setAccepted(isHeldKey(event->key()));
    if (!event->isAccepted() || event->isAutoRepeat() || !m_isPressed)
        return;
    setPressed(false);
    click();
}

// Mouse

void ButtonItem::mousePressEvent(QMouseEvent *event) {
    forceActiveFocus(Qt::MouseFocusReason);
    setPressed(true);
    event->accept();
}

void ButtonItem::mouseMoveEvent(QMouseEvent *event) {
    setPressed(contains(event->position()));
}

void ButtonItem::mouseReleaseEvent(QMouseEvent *event) {
    const bool isClick = m_isPressed && contains(event->position());
    setPressed(false);
    if (isClick)
        click();
}

// Another item has taken the mouse, for example to scroll.
void ButtonItem::mouseUngrabEvent() {
    setPressed(false);
}

} // namespace KestrioKit::Quick
