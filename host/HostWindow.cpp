#include "host/HostWindow.h"

#include "host/ScreenReader.h"

ViewNode ViewNode::describing(const QObject &view) {
    ViewNode node;
    node.identifier = view.objectName();
    QAccessibleInterface *const interface =
        QAccessible::queryAccessibleInterface(const_cast<QObject *>(&view));
    if (interface)
        node.accessibleName = interface->text(QAccessible::Name);
    node.role = roleName(interface ? interface->role() : QAccessible::NoRole);
    return node;
}
