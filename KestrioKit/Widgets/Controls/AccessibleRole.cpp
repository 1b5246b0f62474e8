#include "KestrioKit/Widgets/Controls/AccessibleRole.h"

#include "KestrioKit/Core/Session/AccessibleTexts.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QStringList>
#include <QVariant>
#include <QWidget>

namespace KestrioKit {

namespace {

constexpr auto roleProperty = "KestrioKit.accessibleRole";
constexpr auto labelProperty = "KestrioKit.accessibleLabel";

class ViewInterface final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = role() == QAccessible::Dialog;
        state.checkable = role() == QAccessible::RadioButton;
        return state;
    }

    QList<std::pair<QAccessibleInterface *, QAccessible::Relation>>
    relations(QAccessible::Relation match) const override {
        auto relations = QAccessibleWidget::relations(match);
        auto *const label = object()->property(labelProperty).value<QWidget *>();
        if (label && match.testFlag(QAccessible::Label))
            relations.append({QAccessible::queryAccessibleInterface(label), QAccessible::Label});
        return relations;
    }

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (button() && button()->isEnabled())
            names.prepend(pressAction());
        return names;
    }

    void doAction(const QString &name) override {
        if (button() && name == pressAction())
            button()->animateClick();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QAbstractButton *button() const { return qobject_cast<QAbstractButton *>(object()); }
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
    // Qt ignores repeated installations, but drops the factory with each application object.
    QAccessible::installFactory(makeInterface);
    view->setProperty(roleProperty, int(role));
}

void setAccessibleLabel(QWidget *view, QWidget *label) {
    view->setProperty(labelProperty, QVariant::fromValue(label));
}

void setRadioGroup(const QList<QWidget *> &buttons, const SurveyTexts &texts,
                   const QString &firstLabel, const QString &lastLabel) {
    for (qsizetype position = 1; QWidget *const button : buttons) {
        setAccessibleRole(button, QAccessible::RadioButton);
        button->setAccessibleDescription(
            radioDescription(texts, position, buttons.size(), firstLabel, lastLabel));
        ++position;
    }
}

void announce(QWidget *view) {
    QAccessibleEvent event(view, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace KestrioKit
