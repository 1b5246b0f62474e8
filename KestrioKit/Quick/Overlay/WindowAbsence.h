#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWindow>

namespace KestrioKit::Quick {

/// Distinguishes a short absence of a host window from a long one. Hosts hide a window for a moment
/// to change its flags, and for longer to keep it in the tray. A minimized window is not absent.
/// Use it on the main thread only.
class WindowAbsence final : public QObject {
    Q_OBJECT

public:
    /// `parent` is the owner.
    explicit WindowAbsence(QObject *parent);

    /// Watches `window` instead of the window before. Null stops watching.
    void watch(QWindow *window);

Q_SIGNALS:
    /// Emitted when the window is shown again within two seconds after it was hidden.
    void ended();
    /// Emitted when the window has been hidden for two seconds, or is destroyed.
    void lasted();

private:
    void visibleChanged(bool isVisible);

    QPointer<QWindow> m_window;
    QTimer m_timer{this};
};

} // namespace KestrioKit::Quick
