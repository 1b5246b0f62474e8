#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace KestrioKit {

/// Waits while a host's window is hidden: hosts hide a window for a moment to give it other flags
/// or another place, and for longer to keep it in the tray. For the main thread.
class WindowAbsence final : public QObject {
    Q_OBJECT

public:
    explicit WindowAbsence(QObject *parent);

    /// Watches `window`, and no other window any more.
    void watch(QWidget *window);

Q_SIGNALS:
    /// The window is shown again within two seconds of being hidden.
    void ended();
    /// The window has been hidden for two seconds.
    void lasted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QWidget> m_window;
    QTimer m_timer{this};
};

} // namespace KestrioKit
