#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/KestrioKitExport.h"

#include <QEvent>
#include <QObject>
#include <QPointer>

namespace KestrioKit {

/// Decides which presses of a page's controls count, so that a double-click, or two quick presses
/// of a key, click a control only once. After a click, presses of the same control are refused
/// until the platform's double-click interval has passed since the accepted press. Other controls
/// are not affected. Use it on the main thread only.
class KESTRIOKIT_EXPORT DoublePress {
public:
    /// `clock` must outlive this object.
    explicit DoublePress(const Clock &clock) : m_clock(clock) {}

    /// Returns whether `control` must ignore `event`, because it is a press that does not count.
    /// All other events pass.
    bool refuses(const QObject *control, const QEvent &event);
    /// Tells that the accepted press has clicked the control.
    void clicked() { m_hasClicked = true; }

private:
    bool isSecond(const QObject *control, bool isDoubleClick) const;

    const Clock &m_clock;
    /// The control of the accepted press, and when it was pressed.
    QPointer<const QObject> m_pressed;
    DispatchTime m_pressedAt;
    /// Whether that press has clicked the control.
    bool m_hasClicked = false;
};

} // namespace KestrioKit
