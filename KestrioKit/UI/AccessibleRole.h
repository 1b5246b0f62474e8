#pragma once

#include <QAccessible>

class QWidget;

namespace KestrioKit {

/// Tells assistive technology what a plain widget is for. Its name is `QWidget::accessibleName`.
void setAccessibleRole(QWidget *view, QAccessible::Role role);

/// Has a screen reader say the view's name now.
void announce(QWidget *view);

} // namespace KestrioKit
