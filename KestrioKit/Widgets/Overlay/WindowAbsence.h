#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace KestrioKit {

/// Distinguishes a short absence of a host window from a long one. Hosts hide a window for a moment
/// to change its flags or its parent, and for longer to keep it in the tray. A window that the
/// system hides, for example when it is minimized, is not absent. Use it on the main thread only.
class WindowAbsence final : public QObject {
    Q_OBJECT

public:
    /// `parent` is the owner.
    explicit WindowAbsence(QObject *parent);

    /// Watches `window` instead of the window before. Null stops watching.
    void watch(QWidget *window);

Q_SIGNALS:
    /// Emitted when the window is shown again within two seconds after it was hidden.
    void ended();
    /// Emitted when the window has been hidden for two seconds.
    void lasted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QWidget> m_window;
    QTimer m_timer{this};
};

} // namespace KestrioKit
