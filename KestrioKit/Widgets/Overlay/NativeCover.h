#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace KestrioKit {

/// Keeps a view above the native windows that are embedded in its window, such as those of
/// `QWidget::createWindowContainer()`. Native windows cover every widget that has no native window
/// of its own. The view therefore becomes native, but only if its window contains such windows. Use
/// it on the main thread only.
class NativeCover final : public QObject {
    Q_OBJECT

public:
    /// `view` must outlive the cover.
    explicit NativeCover(QWidget *view) : m_view(view) {}

    /// Starts to watch the current window of the view for embedded native windows.
    void begin();
    /// Stops watching. The view stays native if it has become so.
    void end();

    /// Returns the native windows embedded in the window of `view`, except the one of `view`.
    static QList<QWindow *> windowsBeside(const QWidget *view);

Q_SIGNALS:
    /// Emitted when the view has been raised above a native window that was added after `begin()`.
    void raised();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void check();
    void makeNative();

    QWidget *m_view;
    QPointer<QWindow> m_window;
    bool m_isCheckScheduled = false;
};

} // namespace KestrioKit
