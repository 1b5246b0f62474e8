#pragma once

#include <QAccessible>
#include <QList>
#include <QPointer>
#include <QWidget>

namespace KestrioKit {

/// Hides the widgets of a window from assistive technology, except one child and its descendants.
/// As long as the shield exists, the hidden widgets are reported as invisible and offer no actions.
/// Accessible interfaces that were handed out before become invalid. Use it on the main thread
/// only.
class AccessibilityShield final : private QAccessible::ActivationObserver {
public:
    /// `exception` is the child of `window` that stays accessible. It must outlive the shield,
    /// while `window` may be destroyed before.
    AccessibilityShield(QWidget *window, QWidget *exception);
    /// Makes the hidden widgets accessible again.
    ~AccessibilityShield() override;
    Q_DISABLE_COPY_MOVE(AccessibilityShield)

private:
    bool covers(const QWidget *view) const;
    void accessibilityActiveChanged(bool active) override;
    void forgetInterfaces(const QList<QPointer<QWidget>> &views) const;

    static QAccessibleInterface *makeInterface(const QString &className, QObject *object);

    QPointer<QWidget> m_window;
    QWidget *m_exception;
    /// The widgets whose accessible interfaces this shield has replaced.
    QList<QPointer<QWidget>> m_disguised;
};

} // namespace KestrioKit
