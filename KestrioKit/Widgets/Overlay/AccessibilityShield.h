#pragma once

#include <QAccessible>
#include <QList>
#include <QPointer>
#include <QWidget>

namespace KestrioKit {

/// Keeps assistive technology off the widgets of a window, but for those of one of its children:
/// while it lives they are invisible to it, offer no actions, and what it held of them is void.
/// For the main thread.
class AccessibilityShield final : private QAccessible::ActivationObserver {
public:
    AccessibilityShield(QWidget *window, QWidget *exception);
    ~AccessibilityShield() override;
    Q_DISABLE_COPY_MOVE(AccessibilityShield)

private:
    bool covers(const QWidget *view) const;
    void accessibilityActiveChanged(bool active) override;
    void forgetInterfaces(const QList<QPointer<QWidget>> &views) const;

    static QAccessibleInterface *makeInterface(const QString &className, QObject *object);

    QPointer<QWidget> m_window;
    QWidget *m_exception;
    /// Whose interfaces were made here.
    QList<QPointer<QWidget>> m_disguised;
};

} // namespace KestrioKit
