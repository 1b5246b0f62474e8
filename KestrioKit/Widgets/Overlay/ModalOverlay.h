#pragma once

#include "KestrioKit/Widgets/Overlay/AccessibilityShield.h"
#include "KestrioKit/Widgets/Overlay/FocusKeeper.h"
#include "KestrioKit/Widgets/Overlay/HostPicture.h"
#include "KestrioKit/Widgets/Overlay/NativeCover.h"
#include "KestrioKit/Widgets/Overlay/WindowAbsence.h"

#include <memory>

namespace KestrioKit {

/// A modal view that covers a whole host window. It follows the window's size, a change of parent
/// and a short absence. It keeps all input from the host: mouse, touch, gestures, keys, shortcuts
/// and the actions of assistive technology. Tab moves the focus among the overlay's own controls.
/// Use it on the main thread only.
class ModalOverlay : public QWidget {
    Q_OBJECT

protected:
    ModalOverlay();

    /// Covers `window`, which then owns the overlay, and receives its keys. The focus does not move
    /// until a control on the overlay takes it.
    void cover(QWidget *window);
    /// Hides the overlay and returns the focus to the widget that had it before.
    void uncover();

    /// Paints a picture of the host instead of letting the host show through, so that an animation
    /// on the overlay does not make the host repaint. Lasts until `thaw()` or a change of size.
    void freeze();
    /// Lets the host show through again. An overlay with a native window takes a new picture
    /// instead.
    void thaw();

    /// Places the overlay's children. Called when the overlay is placed, resized or when the safe
    /// area has changed.
    virtual void layOut() = 0;
    /// Called for each pressed key that no control on the overlay handles.
    virtual void keyPressed(const QKeyEvent &event) = 0;
    /// Called when the window has been hidden or closed for two seconds.
    virtual void windowGone() = 0;
    /// Called when the overlay may have become visible: after it is placed, after its window is
    /// shown again, and when the window's state changes.
    virtual void visibilityChanged() = 0;
    /// Called when `view` has received the focus: the overlay or one of its children.
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
    /// Pictures of the embedded native windows, taken before the overlay covered them.
    QList<EmbeddedPicture> m_embeddedPictures;
    /// The picture of the host that the overlay paints. Null while the host shows through.
    QPixmap m_picture;
    /// Null unless the host window is translucent.
    QPointer<HostShape> m_shape;
    bool m_isRenderingScheduled = false;
};

} // namespace KestrioKit
