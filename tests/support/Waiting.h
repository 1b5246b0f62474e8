#pragma once

#include <QBasicTimer>
#include <QCoreApplication>
#include <QDeadlineTimer>

#include <functional>

namespace KestrioKit {

/// How long tests wait for an expected event. The limit suits a machine under heavy load.
inline constexpr std::chrono::seconds patience{120};

/// Runs the calling thread's event loop until `condition` holds. Returns false if it does not hold
/// within `limit`.
inline bool waitFor(const std::function<bool()> &condition,
                    std::chrono::milliseconds limit = patience) {
    const QDeadlineTimer deadline(limit);
    QObject wakenByTimer;
    QBasicTimer timer;
    timer.start(1, &wakenByTimer);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Runs the calling thread's event loop for `time`.
inline void pause(std::chrono::milliseconds time) {
    waitFor([] { return false; }, time);
}

} // namespace KestrioKit
