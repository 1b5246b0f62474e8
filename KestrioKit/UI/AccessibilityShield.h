#pragma once

#include <QPointer>
#include <QWidget>

class QAccessibleInterface;

namespace KestrioKit {

/// Keeps assistive technology off the widgets of a window, but for those of one of its children:
/// while it lives they are invisible to it, offer no actions, and what it held of them is void.
/// For the main thread.
class AccessibilityShield {
public:
    AccessibilityShield(QWidget *window, QWidget *exception);
    ~AccessibilityShield();
    Q_DISABLE_COPY_MOVE(AccessibilityShield)

private:
    bool covers(const QWidget *view) const;
    void forgetInterfaces() const;

    static QAccessibleInterface *makeInterface(const QString &className, QObject *object);

    QPointer<QWidget> m_window;
    QWidget *m_exception;
};

} // namespace KestrioKit
