#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace KestrioKit {

/// Keeps the keyboard for a view that covers its window. Once the focus has come to the view, or to
/// a child of it, it returns there whenever the host moves it elsewhere in the window. Keys that
/// reach the host meanwhile go to the view instead. For the main thread.
class FocusKeeper final : public QObject {
    Q_OBJECT

public:
    /// `view` must outlive the keeper.
    explicit FocusKeeper(QWidget *view) : m_view(view) {}

    /// Starts in the window that the view lies on now.
    void begin();
    /// Stops, and gives the focus back to what had it before, or would have it now.
    void end();
    /// Moves the focus back into the view, if it was there before.
    void restore();

Q_SIGNALS:
    /// The focus has come to `view`, which is the view itself or a child of it.
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
    QPointer<QWidget> m_before;
    QPointer<QWindow> m_windowBefore;
    QPointer<QWidget> m_inside;
    /// What would get the keys while the focus is outside of the view.
    QPointer<QObject> m_intruder;
    int m_returns = 0;
    bool m_isReturnScheduled = false;
};

} // namespace KestrioKit
