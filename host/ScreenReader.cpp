#include "host/ScreenReader.h"

#include <QMetaEnum>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace Qt::StringLiterals;

namespace {

QStringList &spoken() {
    static auto *const texts = new QStringList;
    return *texts;
}

QString description(QAccessibleInterface &interface) {
    QStringList parts{interface.text(QAccessible::Name), roleName(interface.role())};
    if (interface.state().checkable)
        parts.append(interface.state().checked ? u"checked"_s : u"not checked"_s);
    parts.append(interface.text(QAccessible::Description));
    parts.removeAll(QString());
    return parts.join(u", ");
}

void hear(QAccessibleEvent *event) {
    QAccessibleInterface *const interface = event->accessibleInterface();
    if (!interface)
        return;
    switch (event->type()) {
    case QAccessible::Alert:
        spoken().append(interface->text(QAccessible::Name));
        break;
    case QAccessible::Focus:
        spoken().append(description(*interface));
        break;
    case QAccessible::StateChanged:
        if (interface->state().focused)
            spoken().append(interface->state().checked ? u"checked"_s : u"not checked"_s);
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

// Without a handler, Qt hands the event on to the platform, and so to a screen reader proper.
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

// Qt tells nobody while its platform thinks that nobody listens, which is for the platform to say.
void startScreenReader() {
    QAccessible::installUpdateHandler(listen);
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
}

QStringList takeSpoken() {
    return std::exchange(spoken(), {});
}
