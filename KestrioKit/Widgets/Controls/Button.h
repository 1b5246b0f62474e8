#pragma once

#include <QAbstractButton>

namespace KestrioKit {

/// Base class of the survey's buttons. A button is highlighted while it is pressed. Space, Return
/// and Enter click it. The focus ring is visible only to a visitor who uses the keyboard. Arrow
/// keys are passed on to the parent. Use it on the main thread only.
class Button : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(qreal alpha READ alpha)

public:
    /// Returns whether the button is pressed.
    bool isHighlighted() const { return isDown(); }

    /// Returns the opacity of the button, from 0 (invisible) to 1 (opaque).
    virtual qreal alpha() const { return 1; }

    /// Returns whether the button has the focus and draws its focus ring.
    bool isFocusVisible() const { return hasFocus() && m_focusIsVisible; }

    /// Returns an empty size, because titles may wrap.
    QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    /// `title` is plain text. An ampersand in it does not create a shortcut.
    explicit Button(const QString &title);

    /// Called when `isHighlighted()` has changed. The default implementation repaints the button.
    virtual void highlightedChanged() { update(); }

    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// Whether the focus came from the keyboard, or a key was pressed since.
    bool m_focusIsVisible = false;
};

} // namespace KestrioKit
