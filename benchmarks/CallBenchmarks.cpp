#include "benchmarks/Programs.h"

#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Kestrio.h"

#include <benchmark/benchmark.h>

#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <future>
#include <thread>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int calls = 1000;
/// Long enough for the other thread to fall asleep. Waking it is the most expensive part of a call.
constexpr auto untilAsleep = 1ms;
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

bool isIdle() {
    std::promise<bool> idle;
    KestrioCore::shared()->api()->reportIdle([&idle](bool is) { idle.set_value(is); });
    return idle.get_future().get();
}

template <typename Call>
void timeCalls(benchmark::State &state, const Call &call, std::chrono::milliseconds pause) {
    std::vector<double> microseconds;
    for ([[maybe_unused]] auto iteration : state) {
        const auto start = std::chrono::steady_clock::now();
        call();
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(took.count());
        microseconds.push_back(took.count() * 1e6);
        if (pause > 0ms)
            std::this_thread::sleep_for(pause);
    }
    state.counters["median"] = quantile(microseconds, 0.5);
    state.counters["p99"] = quantile(microseconds, 0.99);
}

void track(benchmark::State &state, std::chrono::milliseconds pause, bool savesPromptly) {
    if (!serviceRuns())
        return state.SkipWithError("there is no service");
    Kestrio &kestrio = Kestrio::shared();
    kestrio.configure(u"answers"_s);
    if (!waitFor([&kestrio] { return kestrio.visitorIdentifier().has_value(); }))
        return state.SkipWithError("there is no visitor");
    runEventLoop(untilReady);
    kestrio.setSavesPromptly(savesPromptly);
    timeCalls(
        state, [&kestrio] { kestrio.track(u"Catalogue Opened"_s); }, pause);
    kestrio.setSavesPromptly(false);
    if (!waitFor(isIdle))
        state.SkipWithError("the events are not delivered");
}

void postEmptyBlock(benchmark::State &state, std::chrono::milliseconds pause) {
    QThread thread;
    QObject receiver;
    receiver.moveToThread(&thread);
    thread.start();
    timeCalls(
        state,
        [&receiver] {
            QMetaObject::invokeMethod(
                &receiver, [] {}, Qt::QueuedConnection);
        },
        pause);
    thread.quit();
    thread.wait();
}

constexpr auto aThousand = [](auto *benchmark) {
    benchmark->Iterations(calls)->UseManualTime()->Unit(benchmark::kMicrosecond);
};
BENCHMARK_CAPTURE(track, busy, 0ms, false)->Apply(aThousand);
BENCHMARK_CAPTURE(track, busy_saving, 0ms, true)->Apply(aThousand);
BENCHMARK_CAPTURE(track, asleep, untilAsleep, false)->Apply(aThousand);
BENCHMARK_CAPTURE(track, asleep_saving, untilAsleep, true)->Apply(aThousand);
BENCHMARK_CAPTURE(postEmptyBlock, busy, 0ms)->Apply(aThousand);
BENCHMARK_CAPTURE(postEmptyBlock, asleep, untilAsleep)->Apply(aThousand);

} // namespace
