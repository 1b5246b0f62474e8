#pragma once

#include "KestrioKit/Core/Platform/Logging.h"
#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"
#include "KestrioKit/Core/Queue/WaitingTasks.h"

#include <QList>

#include <atomic>
#include <functional>
#include <memory>

namespace KestrioKit {

/// Told by the runners when their lists have changed enough to be saved.
class QueueRunnerDelegate {
public:
    virtual ~QueueRunnerDelegate() = default;

    /// Persists every runner's lists now. Called on the run queue.
    virtual void save() = 0;
    /// Takes note of tasks that were dropped since too many waited. Called on the run queue.
    virtual void tasksDropped(qsizetype count) = 0;
};

/// Drains one list of tasks to the service: sends what is ready, retries what failed after its
/// back-off, and finishes the rest. How tasks are sent is the subclass's affair.
///
/// Every change of the lists is a block on `runQueue`, which the runners of one owner share. The
/// operations return at once and may be called from any thread.
class QueueRunner : public std::enable_shared_from_this<QueueRunner> {
public:
    /// The most tasks that wait, unless the host wants another limit.
    static constexpr qsizetype defaultQueueLimit = 25;

    /// `clock` must outlive the runner. A sender or delegate that has gone is not called. When more
    /// than `queueLimit` tasks wait, the oldest are dropped.
    QueueRunner(std::weak_ptr<SubmissionSender> api, DispatchQueue runQueue, const Clock &clock,
                QString name, qsizetype queueLimit);
    virtual ~QueueRunner() = default;
    Q_DISABLE_COPY_MOVE(QueueRunner)

    const QString &name() const { return m_name; }
    void setDelegate(std::weak_ptr<QueueRunnerDelegate> delegate) {
        m_delegate = std::move(delegate);
    }

    /// While false nothing is sent; tasks are still taken and kept. True at first.
    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// Says as whom records are sent from now on. To be called on the run queue.
    void setIdentity(std::optional<qint64> visitorIdentifier, std::optional<QString> token);

    void append(QueueTask task) { append(QList<QueueTask>{std::move(task)}); }
    /// Adds tasks at the end and flushes.
    void append(QList<QueueTask> tasks);
    /// The same at once. To be called on the run queue.
    void take(const QList<QueueTask> &tasks);
    /// Sends what is ready, or does so after the send that is under way.
    void flush();
    /// Drops what waits; what is being sent is not sent again. To be called on the run queue.
    void clear();

    /// The requests that wait, then those being sent, unless they were cleared: of these the last
    /// ones, with which they are as many as may wait. To be called on the run queue.
    QList<QueueableRequest> recordsToPersist() const;
    /// Whether nothing is being sent and nothing that waits is ready. To be called on the run
    /// queue.
    bool isIdle() const;

protected:
    /// Takes the tasks that are finished, whether they are to be retried, and what came of them.
    using Finished =
        std::function<void(const QList<QueueTask> &tasks, bool retry,
                           std::optional<HTTPURLResponse> response, std::optional<Error> error)>;

    /// The most tasks that are sent together.
    virtual qsizetype mostAtOnce() const = 0;
    /// Sends the tasks and calls `completion` with each of them once. Called on the run queue.
    virtual void performTasks(const QList<QueueTask> &tasks, const Finished &completion) = 0;

    /// Sends a request that stands for `tasks` and judges the answer: 5xx and failures are to be
    /// retried, all else is final. A disabled service disables the runner.
    void send(const URLRequest &request, const QList<QueueTask> &tasks, const Finished &completion);

    /// What builds the requests of these records; none when the sender has gone. To be called on
    /// the run queue.
    std::unique_ptr<const KestrioServiceRequests> networkRequests() const;

private:
    void runFlush();
    QList<QueueTask> selectReadyTasks();
    void scheduleNextRun();
    void schedule(DispatchTime nextRun);
    void finish(const QList<QueueTask> &tasks, bool retry,
                const std::optional<HTTPURLResponse> &response, const std::optional<Error> &error);
    void removeFromFlight(const QList<QueueTask> &tasks);
    void retry(const QList<QueueTask> &tasks, const std::optional<HTTPURLResponse> &response,
               const std::optional<Error> &error);
    void flushFinished();
    void log(LogLevel level, const QString &message) const;

    std::atomic<bool> m_enabled = true;
    WaitingTasks m_queue;
    QList<QueueTask> m_inFlight;
    DispatchQueue m_runQueue;
    std::weak_ptr<SubmissionSender> m_api;
    std::optional<qint64> m_visitorIdentifier;
    std::optional<QString> m_visitorToken;
    bool m_again = false;
    QString m_name;
    qsizetype m_queueLimit;
    std::weak_ptr<QueueRunnerDelegate> m_delegate;
    std::shared_ptr<DispatchWorkItem> m_scheduledRun;
    const Clock &m_clock;
};

} // namespace KestrioKit
