#include "tests/support/Waiting.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QObject>

namespace KestrioKit {

bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit) {
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

void pause(std::chrono::milliseconds time) {
    waitFor([] { return false; }, time);
}

} // namespace KestrioKit
