#pragma once

#include <QAbstractButton>

namespace KestrioKit {

/// What the survey's buttons share: they highlight while pressed, are pressed with Space, Return
/// or Enter, and show the focus to who uses the keyboard. Arrow keys are left to their owner.
class Button : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(qreal alpha READ alpha)

public:
    bool isHighlighted() const { return isDown(); }

    /// How opaque it is, from 0 to 1.
    virtual qreal alpha() const { return 1; }

    /// Whether it has the focus and shows that.
    bool isFocusVisible() const { return hasFocus() && m_focusIsVisible; }

    /// What is written on it wraps.
    QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    /// `title` is plain text, an ampersand in it too.
    explicit Button(const QString &title);

    /// `isHighlighted()` has changed.
    virtual void highlightedChanged() { update(); }

    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool m_focusIsVisible = false;
};

} // namespace KestrioKit
