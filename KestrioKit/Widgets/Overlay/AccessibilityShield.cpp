#include "KestrioKit/Widgets/Overlay/AccessibilityShield.h"

#include <QAccessibleObject>
#include <QAccessibleWidget>

#include <algorithm>
#include <iterator>

namespace KestrioKit {

namespace {

QList<AccessibilityShield *> &shields() {
    static auto *const list = new QList<AccessibilityShield *>;
    return *list;
}

/// Represents a covered widget to assistive technology, as invisible and without children.
class CoveredInterface final : public QAccessibleObject {
public:
    explicit CoveredInterface(QWidget *view) : QAccessibleObject(view) {}

    QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(object()->parent());
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

/// Represents the window, with the exception as its only child. The window's own interface may omit
/// that child, because some classes list only parts they know.
class WindowInterface final : public QAccessibleWidget {
public:
    WindowInterface(QWidget *window, QWidget *exception)
        : QAccessibleWidget(window, QAccessible::Window), m_exception(exception) {}

    int childCount() const override { return 1; }
    QAccessibleInterface *child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(m_exception) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *interface) const override {
        return interface && interface->object() == m_exception ? 0 : -1;
    }
    QAccessibleInterface *childAt(int, int) const override { return child(0); }

private:
    QWidget *m_exception;
};

} // namespace

AccessibilityShield::AccessibilityShield(QWidget *window, QWidget *exception)
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

bool AccessibilityShield::covers(const QWidget *view) const {
    return view->window() == m_window && view != m_exception && !m_exception->isAncestorOf(view);
}

// No interface exists before accessibility is active. Deleting interfaces more often would waste
// memory, because Qt never removes the connection that it makes to the widget for each interface.
void AccessibilityShield::accessibilityActiveChanged(bool active) {
    if (!active || !m_window)
        return;
    const QList<QWidget *> views = m_window->findChildren<QWidget *>() << m_window;
    QList<QPointer<QWidget>> covered;
    std::ranges::copy_if(views, std::back_inserter(covered),
                         [this](const QWidget *view) { return covers(view); });
    forgetInterfaces(covered);
}

// Qt creates the interfaces again on demand, with the factory that is installed then.
void AccessibilityShield::forgetInterfaces(const QList<QPointer<QWidget>> &views) const {
    for (QWidget *const view : views) {
        QAccessibleInterface *const known =
            view ? QAccessible::queryAccessibleInterface(view) : nullptr;
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
    auto *const view = qobject_cast<QWidget *>(object);
    if (!view)
        return nullptr;
    for (AccessibilityShield *const shield : shields()) {
        if (!shield->covers(view))
            continue;
        shield->m_disguised.append(view);
        if (view == shield->m_window)
            return new WindowInterface(view, shield->m_exception);
        return new CoveredInterface(view);
    }
    return nullptr;
}

} // namespace KestrioKit
