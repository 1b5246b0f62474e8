#include "benchmarks/DiskSyncs.h"
#include "benchmarks/Programs.h"
#include "benchmarks/RunningLibrary.h"

#include "KestrioKit/Kestrio.h"

#include <benchmark/benchmark.h>

#include <QThread>

#include <chrono>
#include <ctime>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int calls = 1000;
/// Long enough for the other thread to fall asleep. Waking it is the most expensive part of a call.
constexpr auto untilAsleep = 1ms;

/// Measures the process between its construction and `report()`.
class Usage {
public:
    /// Adds the processor time in microseconds and the disk syncs per call.
    void report(benchmark::State &state) const {
        const double seconds = double(std::clock() - m_processorTime) / CLOCKS_PER_SEC;
        state.counters["processor"] = seconds * 1e6 / calls;
        state.counters["syncs"] = double(diskSyncs() - m_syncs) / calls;
    }

private:
    std::clock_t m_processorTime = std::clock();
    int m_syncs = diskSyncs();
};

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
    if (!libraryRuns())
        return state.SkipWithError("there is no visitor");
    Kestrio &kestrio = Kestrio::shared();
    kestrio.setSavesPromptly(savesPromptly);
    const Usage usage;
    timeCalls(
        state, [&kestrio] { kestrio.track(u"Catalogue Opened"_s); }, pause);
    kestrio.setSavesPromptly(false);
    if (!waitUntilDelivered())
        state.SkipWithError("the events are not delivered");
    usage.report(state);
}

void postEmptyBlock(benchmark::State &state, std::chrono::milliseconds pause) {
    QThread thread;
    QObject receiver;
    receiver.moveToThread(&thread);
    thread.start();
    const Usage usage;
    timeCalls(
        state,
        [&receiver] {
            QMetaObject::invokeMethod(
                &receiver, [] {}, Qt::QueuedConnection);
        },
        pause);
    thread.quit();
    thread.wait();
    usage.report(state);
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
