#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

namespace KestrioKit::Quick {

/// Keeps the keyboard focus in an item that covers its window. After the item or one of its
/// descendants has received the focus, the keeper moves the focus back whenever the host moves it
/// elsewhere in the window. It gives up after five returns, and starts anew when the visitor moves
/// the focus. Use it on the main thread only.
class FocusKeeper final : public QObject {
    Q_OBJECT

public:
    /// `view` must outlive the keeper.
    explicit FocusKeeper(QQuickItem *view) : m_view(view) {}

    /// Starts to watch the focus in `window`. With `returns`, the focus comes back after the host
    /// has moved it.
    void begin(QQuickWindow *window, bool returns);
    /// Stops watching. If the focus is inside the item, it returns to the item that had it before,
    /// or to the one that the host has chosen since.
    void end();
    /// Moves the focus into the item, to the descendant that had it last.
    void restore();
    /// Moves the focus to the next control of the item, or to the previous one.
    void moveToNext(bool forward);
    /// Returns whether the focus is inside the item.
    bool isInside() const;

Q_SIGNALS:
    /// Emitted when `item` has received the focus: the covering item itself or a descendant.
    void moved(QQuickItem *item);

private:
    void focusChanged();
    void returnFocus();
    bool contains(const QQuickItem *item) const;

    QQuickItem *m_view;
    QPointer<QQuickWindow> m_window;
    /// The item that receives the focus after `end()`.
    QPointer<QQuickItem> m_before;
    /// The item inside the covering item that had the focus last.
    QPointer<QQuickItem> m_inside;
    /// Whether the focus was inside when it last changed.
    bool m_wasInside = false;
    /// How often the focus was moved back since the visitor last moved it.
    int m_returns = 0;
    bool m_isReturning = true;
    bool m_isReturnScheduled = false;
};

} // namespace KestrioKit::Quick
