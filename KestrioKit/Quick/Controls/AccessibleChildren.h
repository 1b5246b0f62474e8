#pragma once

#include <QAccessible>
#include <QQuickItem>

namespace KestrioKit::Quick {

/// Returns the topmost descendants of `item` that assistive technology knows.
QList<QAccessibleInterface *> accessibleChildren(const QQuickItem &item);

/// Returns the nearest ancestor of `item` that assistive technology knows, or its window.
QAccessibleInterface *accessibleParent(const QQuickItem &item);

} // namespace KestrioKit::Quick
