#include "KestrioKit/Core/Session/HostAppearance.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace KestrioKit {

// Only the application object reliably receives these events.
HostAppearance::HostAppearance(std::function<void()> changed) : m_changed(std::move(changed)) {
    if (QCoreApplication::instance())
        QCoreApplication::instance()->installEventFilter(this);
}

// Defers the call, because Qt is about to notify the widgets of the same change and must find them
// unchanged.
bool HostAppearance::eventFilter(QObject *watched, QEvent *event) {
    const bool hasChanged = watched == QCoreApplication::instance() &&
                            (event->type() == QEvent::ApplicationPaletteChange ||
                             event->type() == QEvent::ApplicationFontChange);
    if (hasChanged && !std::exchange(m_isScheduled, true)) {
        const auto report = [this] {
            m_isScheduled = false;
            m_changed();
        };
        QMetaObject::invokeMethod(this, report, Qt::QueuedConnection);
    }
    return false;
}

} // namespace KestrioKit
