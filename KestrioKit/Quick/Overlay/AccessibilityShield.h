#pragma once

#include <QAccessible>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

namespace KestrioKit::Quick {

/// Hides the items of a window from assistive technology, except one and its descendants. As long
/// as the shield exists, the hidden items are reported as invisible and offer no actions.
/// Accessible interfaces that were handed out before become invalid. Use it on the main thread
/// only.
class AccessibilityShield final : private QAccessible::ActivationObserver {
public:
    /// `exception` is the item of `window` that stays accessible. It must outlive the shield, while
    /// `window` may be destroyed before.
    AccessibilityShield(QQuickWindow *window, QQuickItem *exception);
    /// Makes the hidden items accessible again.
    ~AccessibilityShield() override;
    Q_DISABLE_COPY_MOVE(AccessibilityShield)

private:
    bool covers(const QObject *object) const;
    void accessibilityActiveChanged(bool active) override;
    void forgetInterfaces(const QList<QPointer<QObject>> &objects) const;

    static QAccessibleInterface *makeInterface(const QString &className, QObject *object);

    QPointer<QQuickWindow> m_window;
    QQuickItem *m_exception;
    /// The objects whose accessible interfaces this shield has replaced.
    QList<QPointer<QObject>> m_disguised;
};

} // namespace KestrioKit::Quick
