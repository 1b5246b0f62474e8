#include "KestrioKit/UI/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace KestrioKit {

namespace {

constexpr auto roleProperty = "KestrioKit.accessibleRole";

class ViewInterface final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = role() == QAccessible::Dialog;
        return state;
    }
};

QAccessibleInterface *makeInterface(const QString &, QObject *object) {
    if (!object || !object->isWidgetType())
        return nullptr;
    const QVariant role = object->property(roleProperty);
    return role.isValid()
               ? new ViewInterface(qobject_cast<QWidget *>(object), QAccessible::Role(role.toInt()))
               : nullptr;
}

} // namespace

void setAccessibleRole(QWidget *view, QAccessible::Role role) {
    // Qt takes it once, and forgets it with each application object.
    QAccessible::installFactory(makeInterface);
    view->setProperty(roleProperty, int(role));
}

void announce(QWidget *view) {
    QAccessibleEvent event(view, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace KestrioKit
