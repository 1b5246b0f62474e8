#pragma once

#include "KestrioKit/Quick/Overlay/AccessibilityShield.h"
#include "KestrioKit/Quick/Overlay/FocusKeeper.h"
#include "KestrioKit/Quick/Overlay/WindowAbsence.h"

#include <QQuickItem>

#include <memory>

namespace KestrioKit::Quick {

/// An item that covers a whole window, or another item. It follows the size of what it covers,
/// and a short absence of the window. Over a window it keeps all input from the host: mouse, touch,
/// gestures, wheel, hover, drags, keys, shortcuts and the actions of assistive technology. Tab
/// moves the focus among the overlay's own controls. Use it on the main thread only.
class ModalOverlay : public QQuickItem {
    Q_OBJECT

protected:
    ModalOverlay();
    ~ModalOverlay() override;

    /// Covers `area`. If that is the content item of its window, the overlay keeps all input of the
    /// window from the host. The focus does not move until a control on the overlay takes it.
    void cover(QQuickItem *area);
    /// Hides the overlay and returns the focus to the item that had it before.
    void uncover();

    /// Places the overlay's children. Called when the overlay is placed or resized.
    virtual void layOut() = 0;
    /// Called when the window was hidden or closed for two seconds, or was destroyed.
    virtual void windowGone() = 0;
    /// Called when the overlay may have become visible: after it is placed, after its window is
    /// shown again, and when the window's state changes.
    virtual void visibilityChanged() = 0;
    /// Called when `item` has received the focus: the overlay or one of its descendants.
    virtual void focusMoved(QQuickItem *item) = 0;

    /// Returns whether the overlay covers a whole window, and so keeps its input from the host.
    bool isModal() const;
    /// Returns whether a control on the overlay has the focus.
    bool hasFocusInside() const { return m_focus.isInside(); }

    bool childMouseEventFilter(QQuickItem *receiver, QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void geometryChange(const QRectF &now, const QRectF &before) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void attach(QQuickWindow *window);
    void detach();
    void place();
    bool filterTouch(QEvent *event);
    bool filterKey(QEvent *event);

    FocusKeeper m_focus{this};
    WindowAbsence m_absence{this};
    std::unique_ptr<AccessibilityShield> m_shield;
    QPointer<QQuickItem> m_area;
    QPointer<QQuickWindow> m_window;
    /// Whether the touches that are in progress began on the overlay.
    bool m_ownsTouches = false;
};

} // namespace KestrioKit::Quick
