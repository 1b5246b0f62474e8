#include "KestrioKit/Platform/NetworkTransport.h"

#include "KestrioKit/Platform/NetworkTask.h"

#include <QNetworkAccessManager>
#include <QPointer>
#include <QThread>

#include <atomic>

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
struct NetworkTransport::State {
    std::atomic<int> tasksInFlight = 0;
    /// Used on the executor's thread alone.
    QPointer<Manager> manager;

    QPointer<NetworkTask> send(URLRequest request, Body body, URLCompletion completion) {
        if (!manager || manager->retired()) {
            manager = new Manager;
            QObject::connect(QThread::currentThread(), &QThread::finished, manager,
                             &QObject::deleteLater);
        }
        return manager->send(std::move(request), body, std::move(completion));
    }
};

NetworkTransport::NetworkTransport(Executor &executor, const Clock &clock)
    : m_executor(executor), m_clock(clock), m_state(std::make_shared<State>()) {}

NetworkTransport::~NetworkTransport() {
    m_executor.post([state = m_state] { delete state->manager; });
}

void NetworkTransport::send(URLRequest request, Body body, URLCompletion completion) {
    ++m_state->tasksInFlight;
    auto done = [state = m_state, completion = std::move(completion)](const URLResult &result) {
        completion(result);
        --state->tasksInFlight;
    };
    m_executor.post([state = m_state, request = std::move(request), body, done = std::move(done),
                     &executor = m_executor, deadline = m_clock.now() + answerLimit]() mutable {
        const auto task = state->send(std::move(request), body, std::move(done));
        executor.postAt(deadline, [task] {
            if (task)
                task->giveUp();
        });
    });
}

int NetworkTransport::tasksInFlight() const {
    return m_state->tasksInFlight;
}

} // namespace KestrioKit
