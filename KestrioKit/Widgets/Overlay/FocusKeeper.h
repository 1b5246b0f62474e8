#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace KestrioKit {

/// Keeps the keyboard focus in a view that covers its window. After the view or one of its children
/// has received the focus, the keeper moves the focus back whenever the host moves it elsewhere in
/// the window. It gives up after five returns, and starts anew when the visitor moves the focus.
/// Keys that would reach the host are redirected to the view. Use it on the main thread only.
class FocusKeeper final : public QObject {
    Q_OBJECT

public:
    /// `view` must outlive the keeper.
    explicit FocusKeeper(QWidget *view) : m_view(view) {}

    /// Starts to watch the focus in the current window of the view.
    void begin();
    /// Stops watching. If the focus is inside the view, it returns to the widget that had it
    /// before, or to the one that the host has chosen since.
    void end();
    /// Moves the focus back into the view. Ignored if the view has never had the focus.
    void restore();

Q_SIGNALS:
    /// Emitted when `view` has received the focus: the covering view itself or one of its children.
    void moved(QWidget *view);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void focusChanged(QWidget *old, QWidget *now);
    void focusWindowChanged(QWindow *now);
    void watch(QObject *intruder);
    void scheduleReturn();
    void returnFocus();
    bool isInside(const QWidget *view) const;
    bool isEmbedded(const QWindow *window) const;
    QWidget *target() const;

    QWidget *m_view;
    /// The widget that receives the focus after `end()`.
    QPointer<QWidget> m_before;
    /// The embedded native window that `end()` activates. Null if a widget had the focus.
    QPointer<QWindow> m_windowBefore;
    /// The widget inside the view that had the focus last.
    QPointer<QWidget> m_inside;
    /// The object outside the view that the keys would reach. Null while the focus is inside.
    QPointer<QObject> m_intruder;
    /// How often the focus was moved back since the visitor last moved it.
    int m_returns = 0;
    bool m_isReturnScheduled = false;
};

} // namespace KestrioKit
