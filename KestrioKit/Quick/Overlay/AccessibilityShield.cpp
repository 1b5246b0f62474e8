#include "KestrioKit/Quick/Overlay/AccessibilityShield.h"

#include "KestrioKit/Quick/Controls/AccessibleChildren.h"

#include <QAccessibleObject>

namespace KestrioKit::Quick {

namespace {

QList<AccessibilityShield *> &shields() {
    static auto *const list = new QList<AccessibilityShield *>;
    return *list;
}

/// Represents a covered item to assistive technology, as invisible and without children.
class CoveredInterface final : public QAccessibleObject {
public:
    using QAccessibleObject::QAccessibleObject;

    QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(static_cast<QQuickItem *>(object())->window());
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text) const override { return {}; }
    QAccessible::Role role() const override { return QAccessible::Client; }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = true;
        state.disabled = true;
        return state;
    }
};

/// Represents the window, with what is accessible on the exception as its only children.
class WindowInterface final : public QAccessibleObject {
public:
    WindowInterface(QQuickWindow *window, QQuickItem *exception)
        : QAccessibleObject(window), m_exception(exception) {}

    QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(QCoreApplication::instance());
    }
    int childCount() const override { return int(children().size()); }
    QAccessibleInterface *child(int index) const override { return children().value(index); }
    int indexOfChild(const QAccessibleInterface *interface) const override {
        return int(children().indexOf(const_cast<QAccessibleInterface *>(interface)));
    }
    QAccessibleInterface *focusChild() const override {
        return QAccessible::queryAccessibleInterface(quickWindow()->activeFocusItem());
    }
    QWindow *window() const override { return quickWindow(); }
    QRect rect() const override { return quickWindow()->geometry(); }
    QAccessible::Role role() const override { return QAccessible::Window; }
    QString text(QAccessible::Text text) const override {
        return text == QAccessible::Name ? quickWindow()->title() : QString();
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.active = quickWindow()->isActive();
        state.invisible = !quickWindow()->isVisible();
        return state;
    }

private:
    QQuickWindow *quickWindow() const { return static_cast<QQuickWindow *>(object()); }
    QList<QAccessibleInterface *> children() const { return accessibleChildren(*m_exception); }

    QQuickItem *m_exception;
};

void findItems(QQuickItem *item, QList<QPointer<QObject>> &found) {
    found.append(item);
    for (QQuickItem *const child : item->childItems())
        findItems(child, found);
}

} // namespace

AccessibilityShield::AccessibilityShield(QQuickWindow *window, QQuickItem *exception)
    : m_window(window), m_exception(exception) {
    if (shields().isEmpty())
        QAccessible::installFactory(makeInterface);
    shields().append(this);
    QAccessible::installActivationObserver(this);
    accessibilityActiveChanged(QAccessible::isActive());
}

AccessibilityShield::~AccessibilityShield() {
    QAccessible::removeActivationObserver(this);
    shields().removeOne(this);
    if (shields().isEmpty())
        QAccessible::removeFactory(makeInterface);
    if (m_window)
        forgetInterfaces(m_disguised);
}

bool AccessibilityShield::covers(const QObject *object) const {
    if (object == m_window)
        return true;
    const auto *const item = qobject_cast<const QQuickItem *>(object);
    return item && item->window() == m_window && item != m_exception &&
           !m_exception->isAncestorOf(item);
}

// No interface exists before accessibility is active.
void AccessibilityShield::accessibilityActiveChanged(bool active) {
    if (!active || !m_window)
        return;
    QList<QPointer<QObject>> objects{m_window.data()};
    findItems(m_window->contentItem(), objects);
    objects.removeIf([this](const QPointer<QObject> &object) { return !covers(object); });
    forgetInterfaces(objects);
}

// Qt creates the interfaces again on demand, with the factory that is installed then.
void AccessibilityShield::forgetInterfaces(const QList<QPointer<QObject>> &objects) const {
    for (QObject *const object : objects) {
        QAccessibleInterface *const known =
            object ? QAccessible::queryAccessibleInterface(object) : nullptr;
        if (known)
            QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(known));
    }
    // The event must not be sent while the window is being destroyed.
    if (QAccessible::isActive() && m_window->isVisible()) {
        QAccessibleEvent reordered(m_window, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&reordered);
    }
}

QAccessibleInterface *AccessibilityShield::makeInterface(const QString &, QObject *object) {
    for (AccessibilityShield *const shield : shields()) {
        if (!shield->covers(object))
            continue;
        shield->m_disguised.append(object);
        if (object == shield->m_window)
            return new WindowInterface(shield->m_window, shield->m_exception);
        return new CoveredInterface(object);
    }
    return nullptr;
}

} // namespace KestrioKit::Quick
