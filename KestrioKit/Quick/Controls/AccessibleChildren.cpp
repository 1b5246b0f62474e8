#include "KestrioKit/Quick/Controls/AccessibleChildren.h"

#include <QQuickWindow>

namespace KestrioKit::Quick {

QList<QAccessibleInterface *> accessibleChildren(const QQuickItem &item) {
    QList<QAccessibleInterface *> found;
    for (QQuickItem *const child : item.childItems()) {
        if (!child->isVisible())
            continue;
        if (QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(child))
            found.append(interface);
        else
            found.append(accessibleChildren(*child));
    }
    return found;
}

QAccessibleInterface *accessibleParent(const QQuickItem &item) {
    for (QQuickItem *parent = item.parentItem(); parent; parent = parent->parentItem()) {
        if (QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(parent))
            return interface;
    }
    return QAccessible::queryAccessibleInterface(item.window());
}

} // namespace KestrioKit::Quick
