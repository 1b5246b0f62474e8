#pragma once

#include "KestrioKit/UI/AccessibilityShield.h"

#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include <memory>

namespace KestrioKit {

/// A view over a whole window. It follows the window's size and keeps to itself what is done
/// there: mouse, touch, keys, shortcuts, and the actions of assistive technology. What is on it has
/// the focus, in a cycle of its own. For the main thread.
class ModalOverlay : public QWidget {
    Q_OBJECT

public:
    ~ModalOverlay() override;

protected:
    ModalOverlay();

    /// Lies down over `window`, which owns it from now on, and takes the focus.
    void cover(QWidget *window);
    /// Hides, and gives the focus back to what had it before.
    void uncover();

    /// Shows a picture of what is under it instead of the thing itself, so that moving something
    /// on the overlay does not make the host paint. Until `thaw()`, or a change of size.
    void freeze();
    void thaw();

    /// Moves the focus to where it belongs at first.
    virtual void takeFocus() = 0;
    /// Places what is on it; called whenever its size has changed.
    virtual void layOut() = 0;
    /// A key was pressed that nothing on it has a use for.
    virtual void keyPressed(int key) = 0;
    /// The window has been hidden or closed.
    virtual void windowHidden() = 0;
    /// The focus has come to `view`, which lies on it.
    virtual void focusMoved(QWidget *view) = 0;

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void keepFocus(QWidget *old, QWidget *now);
    bool takesTabFocus(const QWidget *view) const;
    bool windowHasNativeChildren() const;
    QPixmap pictureBehind() const;

    QMetaObject::Connection m_focusConnection;
    QPointer<QWidget> m_focusBefore;
    QPointer<QWidget> m_focusInside;
    std::unique_ptr<AccessibilityShield> m_shield;
    QPixmap m_picture;
    bool m_isTakingFocus = false;
};

} // namespace KestrioKit
