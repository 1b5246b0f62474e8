#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace KestrioKit {

/// Keeps a view above the native windows inside of its window, such as those of
/// `QWidget::createWindowContainer`. They lie above whatever has no native window itself, so the
/// view gets one, but only where there are such windows. For the main thread.
class NativeCover final : public QObject {
    Q_OBJECT

public:
    /// `view` must outlive the cover.
    explicit NativeCover(QWidget *view) : m_view(view) {}

    /// Watches the window that the view lies on now.
    void begin();
    void end();

    /// The native windows inside of the one that `view` lies on, but for its own.
    static QList<QWindow *> windowsBeside(const QWidget *view);

Q_SIGNALS:
    /// The view has become a native window, or has been raised above a new one.
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
