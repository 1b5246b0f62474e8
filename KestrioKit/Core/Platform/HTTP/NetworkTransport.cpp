#include "KestrioKit/Core/Platform/HTTP/NetworkTransport.h"

#include "KestrioKit/Core/Platform/HTTP/NetworkTask.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"

#include <QNetworkAccessManager>
#include <QPointer>
#include <QThread>

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// Qt creates static objects for the first request, and more, for example for TLS, for its
/// response.
std::once_flag firstRequest;
std::once_flag firstAnswer;

} // namespace

struct NetworkTransport::OutgoingRequest {
    URLRequest request;
    Body body;
    URLCompletion completion;
};

/// A network manager that retires when its connections are broken, or when they are doubtful and
/// none is in use. It is destroyed with its last request.
class NetworkTransport::Manager final : public QNetworkAccessManager {
public:
    bool isRetired() const { return m_retired; }

    QPointer<NetworkTask> send(OutgoingRequest sent, Executor &executor) {
        using Connections = NetworkTask::Connections;
        ++m_tasks;
        auto *const task =
            new NetworkTask(*this, executor, std::move(sent.request), sent.body,
                            std::move(sent.completion), [this](Connections connections) {
                                m_worst = std::max(m_worst, connections);
                                --m_tasks;
                                m_retired = m_worst == Connections::broken ||
                                            (m_worst == Connections::doubtful && m_tasks == 0);
                                if (m_retired && m_tasks == 0)
                                    deleteLater();
                            });
        task->start();
        return task;
    }

private:
    int m_tasks = 0;
    NetworkTask::Connections m_worst = NetworkTask::Connections::sound;
    bool m_retired = false;
};

/// Shared with the blocks on the executor, which may outlive the transport.
struct NetworkTransport::State : std::enable_shared_from_this<State> {
    State(Executor &itsExecutor, const Clock &itsClock) : executor(itsExecutor), clock(itsClock) {}

    Executor &executor;
    const Clock &clock;
    // Everything from here on is only used on the executor's thread.
    QPointer<Manager> manager;
    QPointer<Manager> retiredManager;
    /// Requests that wait until the retired manager is destroyed. This limits the number of
    /// managers, since each has a thread, and a buffer per connection.
    std::deque<OutgoingRequest> waiting;
    /// The requests in flight with the times when they are given up, earliest first.
    QList<std::pair<DispatchTime, QPointer<NetworkTask>>> deadlines;
    bool watching = false;

    void send(OutgoingRequest request) {
        if (manager && manager->isRetired()) {
            if (retiredManager)
                return waiting.push_back(std::move(request));
            retiredManager = manager;
            manager = nullptr;
        }
        if (!manager)
            makeManager();
        deadlines.emplaceBack(clock.now() + answerLimit,
                              manager->send(std::move(request), executor));
        watch();
        std::call_once(firstRequest, ApplicationLifecycle::endBeforeWhatExists);
    }

    void makeManager() {
        manager = new Manager;
        QObject::connect(QThread::currentThread(), &QThread::finished, manager,
                         &QObject::deleteLater);
        QObject::connect(manager, &QObject::destroyed, manager, [weak = weak_from_this()] {
            if (const auto state = weak.lock())
                state->sendWaiting();
        });
    }

    void sendWaiting() {
        executor.post([state = shared_from_this()] {
            for (OutgoingRequest &request : std::exchange(state->waiting, {}))
                state->send(std::move(request));
        });
    }

    /// A single block waits for the earliest deadline, however many requests there are.
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
                task->giveUp(u"its answer took too long"_s);
        }
    }

    void cancelAll() {
        const QString reason = u"it was cancelled"_s;
        for (const OutgoingRequest &sent : std::exchange(waiting, {}))
            sent.completion(
                {{},
                 {},
                 transportError(sent.request, QNetworkReply::OperationCanceledError, reason)});
        for (const auto &[deadline, task] : std::exchange(deadlines, {})) {
            if (task)
                task->giveUp(reason);
        }
    }
};

NetworkTransport::NetworkTransport(Executor &executor, const Clock &clock)
    : m_state(std::make_shared<State>(executor, clock)) {}

NetworkTransport::~NetworkTransport() {
    m_state->executor.post([state = m_state] {
        state->waiting.clear();
        delete state->retiredManager;
        delete state->manager;
    });
}

void NetworkTransport::send(URLRequest request, Body body, URLCompletion completion) {
    auto done = [completion = std::move(completion)](const URLResult &result) {
        if (result.response)
            std::call_once(firstAnswer, ApplicationLifecycle::endBeforeWhatExists);
        completion(result);
    };
    m_state->executor.post(
        [state = m_state, request = std::move(request), body, done = std::move(done)]() mutable {
            state->send({std::move(request), body, std::move(done)});
        });
}

void NetworkTransport::cancelAll() {
    m_state->executor.post([state = m_state] { state->cancelAll(); });
}

} // namespace KestrioKit
