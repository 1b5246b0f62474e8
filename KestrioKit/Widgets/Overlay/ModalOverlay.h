#pragma once

#include "KestrioKit/Widgets/Overlay/AccessibilityShield.h"
#include "KestrioKit/Widgets/Overlay/FocusKeeper.h"
#include "KestrioKit/Widgets/Overlay/HostPicture.h"
#include "KestrioKit/Widgets/Overlay/NativeCover.h"
#include "KestrioKit/Widgets/Overlay/WindowAbsence.h"

#include <memory>

namespace KestrioKit {

/// A view over a whole window. It follows the window's size, its place, and its being hidden for a
/// moment. It keeps to itself what is done there: mouse, touch, gestures, keys, shortcuts, and the
/// actions of assistive technology. What is on it has the focus, in a cycle of its own. For the
/// main thread.
class ModalOverlay : public QWidget {
    Q_OBJECT

protected:
    ModalOverlay();

    /// Lies down over `window`, which owns it from now on, and takes the keys. The focus stays
    /// where it is until something on the overlay takes it.
    void cover(QWidget *window);
    /// Hides, and gives the focus back to what had it before.
    void uncover();

    /// Shows a picture of what is under it instead of the thing itself, so that moving something
    /// on the overlay does not make the host paint. Until `thaw()`, or a change of size.
    void freeze();
    void thaw();

    /// Places what is on it; called whenever its size has changed.
    virtual void layOut() = 0;
    /// A key was pressed that nothing on it has a use for.
    virtual void keyPressed(const QKeyEvent &event) = 0;
    /// The window has been hidden or closed, and has stayed so.
    virtual void windowGone() = 0;
    /// The window may show the overlay now: for the first time, or after being hidden or minimized.
    virtual void visibilityChanged() = 0;
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
    void attach(QWidget *window);
    void detach();
    void place();
    void windowReturned();
    void absenceLasted();
    bool filterWindowEvent(QEvent *event);
    bool filterChildAdded(QObject *child);
    bool takesTabFocus(const QWidget *view) const;
    void renderHost();
    void followShape();
    bool isHostTranslucent() const;
    bool isPictureCurrent() const;

    FocusKeeper m_focus{this};
    WindowAbsence m_absence{this};
    NativeCover m_nativeCover{this};
    std::unique_ptr<AccessibilityShield> m_shield;
    QList<EmbeddedPicture> m_embeddedPictures;
    QPixmap m_picture;
    QPointer<HostShape> m_shape;
    bool m_isRenderingScheduled = false;
};

} // namespace KestrioKit
