#pragma once

#include "KestrioKit/Core/Session/DoublePress.h"

#include <QEvent>
#include <QtQml/qqmlregistration.h>

namespace KestrioKit::Quick {

/// Ignores the second press of a double-click on a button that has already answered. Use it on the
/// main thread only.
class PressGuard final : public QObject {
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// `clock` must outlive the guard.
    explicit PressGuard(const Clock &clock) : m_rule(clock) {}

    /// Returns whether `button` must ignore the event, because it is a second press.
    bool ignores(const QObject &button, const QEvent &event) {
        return m_rule.refuses(&button, event);
    }
    /// Tells the guard that the button that was pressed last has been clicked.
    void clicked() { m_rule.clicked(); }

private:
    DoublePress m_rule;
};

} // namespace KestrioKit::Quick
