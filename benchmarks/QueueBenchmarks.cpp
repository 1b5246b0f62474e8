#include "benchmarks/FullState.h"
#include "benchmarks/Programs.h"

#include "KestrioKit/Core/Platform/HTTP/NetworkTransport.h"
#include "KestrioKit/Core/Platform/Storage.h"
#include "KestrioKit/Core/Platform/Threads/LibraryThread.h"
#include "KestrioKit/Core/Platform/Threads/TransientThread.h"
#include "KestrioKit/Core/Service/KestrioService.h"
#include "tests/support/ManualFlagsSource.h"

#include <benchmark/benchmark.h>

#include <QEventLoop>
#include <QGuiApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSaveFile>

#include <future>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

constexpr auto stateFile = "SubmissionQueue"_L1;
constexpr qint64 maximumSize = 1 << 30;
constexpr int kinds = 5;
/// Repetitions for the default limit. The largest limit gets fewer, as each takes longer in
/// proportion.
constexpr int drains = 20;
constexpr int saves = 200;
constexpr int drainsOfMany = 1;
constexpr int savesOfMany = 20;

using SteadyClock = std::chrono::steady_clock;

double secondsSince(SteadyClock::time_point start) {
    return std::chrono::duration<double>(SteadyClock::now() - start).count();
}

/// Forwards requests, records them, and reports when the last response has been handled.
class WatchedTransport final : public URLTransport {
public:
    WatchedTransport(Executor &executor, qint64 requests)
        : m_transport(executor, Clock::system()), m_expected(requests) {}

    /// Called on the library's thread. `done` is called there, too.
    void watch(Block done) {
        m_requests.clear();
        m_answers = m_successes = 0;
        m_done = std::move(done);
    }
    const QList<URLRequest> &requests() const { return m_requests; }
    bool allSucceeded() const { return m_successes == m_expected; }

    void send(URLRequest request, Body body, URLCompletion completion) override {
        m_requests.append(request);
        m_transport.send(std::move(request), body,
                         [this, completion = std::move(completion)](const URLResult &result) {
                             completion(result);
                             m_successes += result.response && result.response->statusCode == 200;
                             if (++m_answers == m_expected)
                                 m_done();
                         });
    }
    void cancelAll() override { m_transport.cancelAll(); }

private:
    NetworkTransport m_transport;
    qint64 m_expected;
    QList<URLRequest> m_requests;
    qint64 m_answers = 0;
    qint64 m_successes = 0;
    Block m_done;
};

/// A folder that is separate from that of the library's shared object, which other benchmarks use.
class FolderOfItsOwn {
public:
    FolderOfItsOwn() { QCoreApplication::setApplicationName(m_name + u"-queue"_s); }
    ~FolderOfItsOwn() { QCoreApplication::setApplicationName(m_name); }
    Q_DISABLE_COPY_MOVE(FolderOfItsOwn)

private:
    const QString m_name = QCoreApplication::applicationName();
};

/// A queue with a full state, as after a start without a network.
class WaitingQueue {
public:
    explicit WaitingQueue(qint64 recordsOfAKind) : m_recordsOfAKind(recordsOfAKind) {
        m_builder->setVisitorIdentifier(visitorOfFullState);
        refill();
    }
    /// Fills the file and loads it again.
    void refill() {
        m_queue.reset();
        runBehind([] {});
        m_flagsSource->change({});
        Storage::setUp();
        Storage::store(std::optional(fullState(m_recordsOfAKind)),
                       Storage::localLibraryURL(stateFile));
        m_queue = SubmissionQueue::make(m_service, m_context, m_recordsOfAKind);
        runBehind([] {});
    }
    /// Runs `block` on the library's thread after all waiting blocks. Waits for it and for the
    /// writes that it causes.
    void runBehind(const Block &block) {
        std::promise<void> done;
        m_thread.post([&] {
            block();
            m_fileThread.post([&] { done.set_value(); });
        });
        done.get_future().wait();
    }
    /// Makes the network available, waits for the last response and returns the duration in
    /// seconds.
    double drain() {
        QEventLoop loop;
        double seconds = 0;
        SteadyClock::time_point start;
        const auto handled = [&] {
            seconds = secondsSince(start);
            QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
        };
        runBehind([&] { m_transport->watch([&] { m_thread.post(handled); }); });
        start = SteadyClock::now();
        m_flagsSource->change(ReachabilityFlag::reachable);
        loop.exec();
        return seconds;
    }

    const WatchedTransport &transport() const { return *m_transport; }

private:
    qint64 m_recordsOfAKind;
    const FolderOfItsOwn m_folder;
    LibraryThread m_thread{Clock::system()};
    TransientThread m_fileThread;
    std::shared_ptr<ManualFlagsSource> m_flagsSource = std::make_shared<ManualFlagsSource>();
    // All events are sent in one batch.
    std::shared_ptr<WatchedTransport> m_transport =
        std::make_shared<WatchedTransport>(m_thread, (kinds - 1) * m_recordsOfAKind + 1);
    LibraryContext m_context{.clock = Clock::system(),
                             .executor = m_thread,
                             .fileExecutor = m_fileThread,
                             .transport = m_transport,
                             .makeFlagsSource = [source = m_flagsSource](const QString &) {
                                 return source;
                             }};
    std::shared_ptr<KestrioServiceRequests> m_builder =
        std::make_shared<KestrioServiceRequests>(Clock::system());
    std::shared_ptr<KestrioService> m_service =
        std::make_shared<KestrioService>(m_builder, m_context);
    std::shared_ptr<SubmissionQueue> m_queue;
};

void writeAtomically(benchmark::State &state, const QString &file, const QByteArray &text) {
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly) || target.write(text) != text.size() || !target.commit())
        state.SkipWithError("the file cannot be written");
}

/// Measures the save of an application that steps back until it is on disk, and separately the part
/// on the calling thread. The floor is measured alternately, because the time of a disk sync varies
/// from second to second.
void save(benchmark::State &state) {
    WaitingQueue waiting(state.range(0));
    Storage::remove(stateFile);
    const QString file = *Storage::localLibraryURL("Floor"_L1);
    const QByteArray text = encodeJSON(fullState(state.range(0)));
    std::vector<double> caller;
    std::vector<double> whole;
    std::vector<double> floor;
    for ([[maybe_unused]] auto iteration : state) {
        const auto bareStart = SteadyClock::now();
        writeAtomically(state, file, text);
        floor.push_back(secondsSince(bareStart) * 1e6);
        const auto start = SteadyClock::now();
        Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
        caller.push_back(secondsSince(start) * 1e6);
        waiting.runBehind([] {});
        whole.push_back(secondsSince(start) * 1e6);
        state.SetIterationTime(whole.back() / 1e6);
    }
    if (!Storage::load<PersistentQueue>(Storage::localLibraryURL(stateFile), maximumSize))
        state.SkipWithError("the state was not saved");
    state.counters["caller"] = quantile(caller, 0.5);
    state.counters["whole"] = quantile(whole, 0.5);
    state.counters["floor"] = quantile(floor, 0.5);
}
BENCHMARK(save)
    ->Arg(defaultLimit)
    ->Iterations(saves)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(save)
    ->Arg(largestLimit)
    ->Iterations(savesOfMany)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

void drain(benchmark::State &state) {
    if (!serviceRuns())
        return state.SkipWithError("there is no service");
    WaitingQueue waiting(state.range(0));
    waiting.drain();
    std::vector<double> seconds;
    for ([[maybe_unused]] auto iteration : state) {
        waiting.refill();
        seconds.push_back(waiting.drain());
        state.SetIterationTime(seconds.back());
        if (!waiting.transport().allSucceeded())
            state.SkipWithError("not every record was taken");
    }
    state.counters["per_second"] = double(kinds * state.range(0)) / quantile(seconds, 0.5);
}
BENCHMARK(drain)
    ->Arg(defaultLimit)
    ->Iterations(drains)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(drain)
    ->Arg(largestLimit)
    ->Iterations(drainsOfMany)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void post(QNetworkAccessManager &manager, const URLRequest &request, const Block &done) {
    QNetworkRequest bare(request.url);
    for (const HTTPHeader &header : request.headers)
        bare.setRawHeader(header.name, header.value);
    QNetworkReply *const reply = manager.sendCustomRequest(bare, request.method, request.body);
    QObject::connect(reply, &QNetworkReply::finished, reply, [reply, done] {
        reply->readAll();
        reply->deleteLater();
        done();
    });
}

double postAll(QNetworkAccessManager &manager, const QList<URLRequest> &requests) {
    QEventLoop loop;
    qsizetype left = requests.size();
    const auto start = SteadyClock::now();
    for (const URLRequest &request : requests) {
        post(manager, request, [&] {
            if (--left == 0)
                loop.quit();
        });
    }
    loop.exec();
    return secondsSince(start);
}

/// Sends the requests of `drain` with a plain network manager.
void postBare(benchmark::State &state) {
    if (!serviceRuns())
        return state.SkipWithError("there is no service");
    WaitingQueue waiting(state.range(0));
    waiting.drain();
    const QList<URLRequest> requests = waiting.transport().requests();
    QNetworkAccessManager manager;
    postAll(manager, requests);
    std::vector<double> seconds;
    for ([[maybe_unused]] auto iteration : state) {
        seconds.push_back(postAll(manager, requests));
        state.SetIterationTime(seconds.back());
    }
    state.counters["per_second"] = double(kinds * state.range(0)) / quantile(seconds, 0.5);
}
BENCHMARK(postBare)
    ->Arg(defaultLimit)
    ->Iterations(drains)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(postBare)
    ->Arg(largestLimit)
    ->Iterations(drainsOfMany)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
