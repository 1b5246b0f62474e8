#include "host/ScreenReader.h"

#include <QMetaEnum>
#include <QPointer>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace Qt::StringLiterals;

namespace {

QStringList &spoken() {
    static auto *const texts = new QStringList;
    return *texts;
}

QString checkState(QAccessibleInterface &interface) {
    const QString word =
        interface.role() == QAccessible::RadioButton ? u"selected"_s : u"checked"_s;
    return interface.state().checked ? word : u"not "_s + word;
}

QString description(QAccessibleInterface &interface) {
    QStringList parts{interface.text(QAccessible::Name), roleName(interface.role())};
    if (interface.state().checkable)
        parts.append(checkState(interface));
    parts.append(interface.text(QAccessible::Description));
    parts.removeAll(QString());
    return parts.join(u", ");
}

void hearAlert(QAccessibleInterface &interface) {
    for (const auto &[label, relation] : interface.relations(QAccessible::Label))
        spoken().append(label->text(QAccessible::Name));
    spoken().append(interface.text(QAccessible::Name));
}

/// Qt may report the same focus twice. An object with neither a name nor a specific role is not
/// announced.
void hearFocus(QAccessibleInterface &interface) {
    static QPointer<QObject> focus;
    if (std::exchange(focus, interface.object()) == interface.object())
        return;
    const QString name = interface.text(QAccessible::Name);
    if (interface.role() != QAccessible::Client || !name.isEmpty())
        spoken().append(description(interface));
}

void hear(QAccessibleEvent *event) {
    QAccessibleInterface *const interface = event->accessibleInterface();
    if (!interface)
        return;
    switch (event->type()) {
    case QAccessible::Alert:
        hearAlert(*interface);
        break;
    case QAccessible::Focus:
        hearFocus(*interface);
        break;
    case QAccessible::StateChanged:
        if (interface->state().focused &&
            static_cast<QAccessibleStateChangeEvent *>(event)->changedStates().checked)
            spoken().append(checkState(*interface));
        break;
    case QAccessible::NameChanged:
    case QAccessible::ValueChanged:
        if (interface->state().focused)
            spoken().append(interface->text(event->type() == QAccessible::NameChanged
                                                ? QAccessible::Name
                                                : QAccessible::Value));
        break;
    default:
        break;
    }
}

// Without a handler, Qt passes the event on to the platform and thus to a real screen reader.
void listen(QAccessibleEvent *event) {
    hear(event);
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(listen);
}

} // namespace

QString roleName(QAccessible::Role role) {
    return QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(role)).toLower();
}

// Qt sends no events until the platform reports an active assistive technology, so this reports
// one.
void startScreenReader() {
    QAccessible::installUpdateHandler(listen);
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
}

QStringList takeSpoken() {
    return std::exchange(spoken(), {});
}
