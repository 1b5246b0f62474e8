#include "host/HostWindow.h"

#include "host/ScreenReader.h"

ViewNode ViewNode::describing(const QObject &view) {
    ViewNode node;
    node.identifier = view.objectName();
    QAccessibleInterface *const interface =
        QAccessible::queryAccessibleInterface(const_cast<QObject *>(&view));
    if (interface)
        node.accessibleName = interface->text(QAccessible::Name);
    // Qt gives this role to widgets without a role of their own, but leaves out such items.
    node.role = roleName(interface ? interface->role() : QAccessible::Client);
    return node;
}
