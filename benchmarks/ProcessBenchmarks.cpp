#include "benchmarks/Programs.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <chrono>
#include <deque>

using namespace Qt::StringLiterals;

namespace {

constexpr int startsOfConfigure = 20;
constexpr int quits = 5;
/// Beyond this number, the oldest events are dropped.
constexpr qsizetype mostStored = 25;
constexpr int hostsAtOnce = 3;
constexpr auto bareHost = "kestrio-bench-bare"_L1;
constexpr auto host = "kestrio-bench-host"_L1;

QProcessEnvironment environment(const QTemporaryDir &data) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, data.path());
    return environment;
}

/// Returns how many events the host left in its state file; -1 if there is no file.
qsizetype storedEvents(const QTemporaryDir &data) {
    QFile file(data.filePath(u"kestrio-bench/Kestrio/SubmissionQueue.json"_s));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return QJsonDocument::fromJson(file.readAll())[u"events"].toArray().size();
}

QJsonObject report(Program &program) {
    return QJsonDocument::fromJson(program.line("{")).object();
}

void timeCall(benchmark::State &state, const QString &program, const QStringList &arguments,
              const QTemporaryDir &data) {
    std::vector<double> microseconds;
    for ([[maybe_unused]] auto iteration : state) {
        Program process(program, arguments, environment(data));
        microseconds.push_back(report(process)[u"microseconds"].toDouble());
        state.SetIterationTime(microseconds.back() / 1e6);
        if (microseconds.back() == 0 || !process.finish())
            state.SkipWithError("the host has failed");
    }
    state.counters["median"] = quantile(microseconds, 0.5);
}

/// Measures the first call in a process that finds an identity and a state from an earlier run.
void configure(benchmark::State &state) {
    const QTemporaryDir data;
    if (!serviceRuns() || !Program(host, {u"quit"_s, u"answers"_s}, environment(data)).finish())
        return state.SkipWithError("there is no visitor");
    timeCall(state, host, {u"configure"_s}, data);
}
BENCHMARK(configure)->Iterations(startsOfConfigure)->UseManualTime();

void readFile(benchmark::State &state) {
    const QTemporaryDir data;
    QFile file(data.filePath(u"small"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(100, ' ')) != 100)
        return state.SkipWithError("the file cannot be written");
    file.close();
    timeCall(state, bareHost, {u"read"_s, file.fileName()}, data);
}
BENCHMARK(readFile)->Iterations(startsOfConfigure)->UseManualTime();

/// Runs several hosts in parallel, because each takes half a minute to become idle.
void idle(benchmark::State &state, const QString &program, const QStringList &arguments) {
    if (!serviceRuns())
        return state.SkipWithError("there is no service");
    std::vector<double> memory;
    std::vector<double> threads;
    std::vector<double> wakeUps;
    for ([[maybe_unused]] auto iteration : state) {
        // Hosts that share a folder would look at each other's files.
        const QTemporaryDir data[hostsAtOnce];
        std::deque<Program> hosts;
        for (const QTemporaryDir &own : data)
            hosts.emplace_back(program, arguments, environment(own));
        for (Program &process : hosts) {
            const QJsonObject figures = report(process);
            memory.push_back(figures[u"KiB"].toDouble());
            threads.push_back(figures[u"threads"].toDouble());
            wakeUps.push_back(figures[u"wakeUps"_s].toDouble());
            if (memory.back() == 0 || !process.finish())
                state.SkipWithError("the host has failed");
        }
    }
    state.counters["KiB"] = quantile(memory, 0.5);
    state.counters["threads"] = quantile(threads, 0.5);
    state.counters["wakeUps"] = quantile(wakeUps, 0.5);
}
BENCHMARK_CAPTURE(idle, bare, bareHost, {u"idle"_s, u"minute"_s})->Iterations(1);
BENCHMARK_CAPTURE(idle, configured, host, {u"idle"_s, u"minute"_s})->Iterations(1);
BENCHMARK_CAPTURE(idle, bare_online, bareHost, {u"idle"_s, u"online"_s})->Iterations(1);
BENCHMARK_CAPTURE(idle, configured_online, host, {u"idle"_s, u"online"_s})->Iterations(1);

void idleOverHTTPS(benchmark::State &state) {
    const QString certificate = secureServiceCertificate();
    if (certificate.isEmpty())
        return state.SkipWithError("there is no service over HTTPS");
    idle(state, host, {u"idle"_s, u"https"_s, certificate});
}
BENCHMARK(idleOverHTTPS)->Iterations(1);

/// Measures the time from the host's call of quit() until the end of the process. The state file
/// must then hold at least `records` events.
void quit(benchmark::State &state, const QString &program, const QStringList &arguments,
          qsizetype records) {
    if (!serviceRuns())
        return state.SkipWithError("there is no service");
    std::vector<double> milliseconds;
    for ([[maybe_unused]] auto iteration : state) {
        const QTemporaryDir data;
        Program process(program, arguments, environment(data));
        const double start = report(process)[u"quitAt"].toDouble();
        if (start == 0 || !process.finish())
            state.SkipWithError("the host has failed");
        const std::chrono::duration<double, std::milli> end =
            std::chrono::steady_clock::now().time_since_epoch();
        milliseconds.push_back(end.count() - start);
        state.SetIterationTime(milliseconds.back() / 1000);
        if (storedEvents(data) < records)
            state.SkipWithError("the state was not saved");
    }
    state.counters["max"] = quantile(milliseconds, 1);
}
constexpr auto quitting = [](auto *benchmark) {
    benchmark->Iterations(quits)->UseManualTime()->Unit(benchmark::kMillisecond);
};
BENCHMARK_CAPTURE(quit, bare, bareHost, {u"quit"_s}, -1)->Apply(quitting);
BENCHMARK_CAPTURE(quit, answers, host, {u"quit"_s, u"answers"_s}, 0)->Apply(quitting);
BENCHMARK_CAPTURE(quit, refuses, host, {u"quit"_s, u"refuses"_s}, 0)->Apply(quitting);
BENCHMARK_CAPTURE(quit, silent, host, {u"quit"_s, u"silent"_s}, mostStored)->Apply(quitting);

} // namespace
