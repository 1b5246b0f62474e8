#pragma once

#include "KestrioKit/Quick/Controls/PressGuard.h"

#include <QPointer>
#include <QQuickItem>

namespace KestrioKit::Quick {

/// The behaviour of the survey's buttons; QML draws them. A button is pressed while the mouse
/// button or the space bar is held down on it. Space, Return and Enter click it. The focus ring is
/// visible only to a visitor who uses the keyboard. Other keys are passed on to the parent. Use it
/// on the main thread only.
class ButtonItem : public QQuickItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(KestrioButton)
    Q_PROPERTY(QString text MEMBER m_text NOTIFY textChanged)
    Q_PROPERTY(KestrioKit::Quick::PressGuard *guard MEMBER m_guard NOTIFY guardChanged)
    Q_PROPERTY(bool pressed READ isPressed NOTIFY pressedChanged)
    Q_PROPERTY(bool focusVisible READ isFocusVisible NOTIFY focusVisibleChanged)

public:
    ButtonItem();

    /// Returns whether the button is held down.
    bool isPressed() const { return m_isPressed; }
    /// Returns whether the button has the focus and shows its focus ring.
    bool isFocusVisible() const { return hasActiveFocus() && m_focusIsVisible; }

    /// Clicks the button, as assistive technology does.
    Q_INVOKABLE void click();

Q_SIGNALS:
    void clicked();
    void textChanged();
    void guardChanged();
    void pressedChanged();
    void focusVisibleChanged();

protected:
    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;

private:
    void setPressed(bool isPressed);
    void setFocusVisible(bool isVisible);

    QString m_text;
    /// Ignores unintended second presses. Null means that every press counts.
    QPointer<PressGuard> m_guard;
    bool m_isPressed = false;
    /// Whether the focus came from the keyboard, or a key was pressed since.
    bool m_focusIsVisible = false;
};

} // namespace KestrioKit::Quick
