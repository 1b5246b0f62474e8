#include "benchmarks/RunningLibrary.h"

#include "benchmarks/Programs.h"

#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Kestrio.h"

#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <memory>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Covers the time from the visitor's response until calls are no longer held.
constexpr auto untilReady = 200ms;
constexpr auto step = 10ms;
constexpr int mostSteps = 1000;

void runEventLoop(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

template <typename Condition>
bool waitFor(const Condition &condition) {
    for (int steps = 0; steps < mostSteps; ++steps) {
        if (condition())
            return true;
        runEventLoop(step);
    }
    return false;
}

} // namespace

bool libraryRuns() {
    Kestrio &kestrio = Kestrio::shared();
    if (!serviceRuns())
        return false;
    kestrio.configure(u"answers"_s);
    if (!waitFor([&kestrio] { return kestrio.visitorIdentifier().has_value(); }))
        return false;
    runEventLoop(untilReady);
    return true;
}

bool waitUntilDelivered() {
    // Asked without blocking, because the caller may measure how promptly the event loop runs.
    const auto isIdle = std::make_shared<std::atomic<bool>>(false);
    return waitFor([&isIdle] {
        KestrioCore::shared()->api()->reportIdle([isIdle](bool is) { *isIdle = is; });
        return isIdle->load();
    });
}
