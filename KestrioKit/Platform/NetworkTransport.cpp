#include "KestrioKit/Platform/NetworkTransport.h"

#include "KestrioKit/Platform/NetworkTask.h"

#include <QNetworkAccessManager>
#include <QPointer>
#include <QThread>

#include <atomic>
#include <utility>

namespace KestrioKit {

/// A network manager that serves until a request has failed. After a failed TLS handshake Qt's
/// manager fails for good, after a time-out its idle connections are probably as dead, and after a
/// broken answer the next one may be read from the middle: the next request takes a new manager.
class NetworkTransport::Manager final : public QNetworkAccessManager {
public:
    bool retired() const { return m_retired; }

    QPointer<NetworkTask> send(URLRequest request, Body body, URLCompletion completion) {
        ++m_tasks;
        auto done = [this, completion = std::move(completion)](const URLResult &result) {
            m_retired = m_retired || result.error;
            completion(result);
            if (--m_tasks == 0 && m_retired)
                deleteLater();
        };
        auto *const task = new NetworkTask(*this, std::move(request), body, std::move(done));
        task->start();
        return task;
    }

private:
    int m_tasks = 0;
    bool m_retired = false;
};

/// Shared with the blocks that wait on the executor, which may outlive the transport.
struct NetworkTransport::State : std::enable_shared_from_this<State> {
    State(Executor &itsExecutor, const Clock &itsClock) : executor(itsExecutor), clock(itsClock) {}

    Executor &executor;
    const Clock &clock;
    std::atomic<int> tasksInFlight = 0;
    // Used on the executor's thread alone.
    QPointer<Manager> manager;
    /// What is out, and when it is to be given up, the earliest first.
    QList<std::pair<DispatchTime, QPointer<NetworkTask>>> deadlines;
    bool watching = false;

    void send(URLRequest request, Body body, URLCompletion completion) {
        if (!manager || manager->retired()) {
            manager = new Manager;
            QObject::connect(QThread::currentThread(), &QThread::finished, manager,
                             &QObject::deleteLater);
        }
        deadlines.emplaceBack(clock.now() + answerLimit,
                              manager->send(std::move(request), body, std::move(completion)));
        watch();
    }

    /// One block waits for the earliest deadline, however many requests there are.
    void watch() {
        deadlines.removeIf([](const auto &deadline) { return !deadline.second; });
        if (watching || deadlines.isEmpty())
            return;
        watching = true;
        executor.postAt(deadlines.first().first, [state = shared_from_this()] {
            state->watching = false;
            state->giveUpLate();
            state->watch();
        });
    }

    void giveUpLate() {
        const DispatchTime now = clock.now();
        for (const auto &[deadline, task] : std::exchange(deadlines, {})) {
            if (deadline > now)
                deadlines.emplaceBack(deadline, task);
            else if (task)
                task->giveUp();
        }
    }
};

NetworkTransport::NetworkTransport(Executor &executor, const Clock &clock)
    : m_state(std::make_shared<State>(executor, clock)) {}

NetworkTransport::~NetworkTransport() {
    m_state->executor.post([state = m_state] { delete state->manager; });
}

void NetworkTransport::send(URLRequest request, Body body, URLCompletion completion) {
    ++m_state->tasksInFlight;
    auto done = [state = m_state, completion = std::move(completion)](const URLResult &result) {
        completion(result);
        --state->tasksInFlight;
    };
    m_state->executor.post(
        [state = m_state, request = std::move(request), body, done = std::move(done)]() mutable {
            state->send(std::move(request), body, std::move(done));
        });
}

int NetworkTransport::tasksInFlight() const {
    return m_state->tasksInFlight;
}

} // namespace KestrioKit
