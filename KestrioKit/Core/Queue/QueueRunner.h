#pragma once

#include "KestrioKit/Core/Platform/Logging.h"
#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"
#include "KestrioKit/Core/Queue/SubmissionSender.h"
#include "KestrioKit/Core/Queue/WaitingTasks.h"

#include <QList>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

namespace KestrioKit {

/// Receives the notifications of the runners.
class QueueRunnerDelegate {
public:
    virtual ~QueueRunnerDelegate() = default;

    /// Saves the tasks of all runners. Called on the run queue after a completed send.
    virtual void save() = 0;
    /// Counts tasks that were dropped because too many waited. Called on the run queue.
    virtual void tasksDropped(qsizetype count) = 0;
};

/// Sends the tasks of one record kind to the service. Ready tasks are sent, failed ones are retried
/// after their back-off, and all others are completed. Subclasses decide how tasks are grouped into
/// requests.
///
/// The lists are only changed in blocks on `runQueue`, which all runners of one owner share. Unless
/// stated otherwise, operations may be called from any thread and return immediately.
class QueueRunner : public std::enable_shared_from_this<QueueRunner> {
public:
    /// The default for the maximum number of waiting tasks.
    static constexpr qsizetype defaultQueueLimit = 25;

    /// Creates an empty runner. `clock` must outlive it. `api` and the delegate are held weakly:
    /// after they are destroyed, they are not called. `name` appears in log lines. When more than
    /// `queueLimit` tasks wait, the oldest are dropped.
    QueueRunner(std::weak_ptr<SubmissionSender> api, DispatchQueue runQueue, const Clock &clock,
                QString name, qsizetype queueLimit);
    virtual ~QueueRunner() = default;
    Q_DISABLE_COPY_MOVE(QueueRunner)

    const QString &name() const { return m_name; }
    /// The delegate is held weakly. Not thread-safe: to be called before the first task is
    /// appended.
    void setDelegate(std::weak_ptr<QueueRunnerDelegate> delegate) {
        m_delegate = std::move(delegate);
    }

    /// While false, nothing is sent, but tasks are still accepted and kept. Default: true.
    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// Sets the visitor and the token with which records are sent from now on. To be called on the
    /// run queue.
    void setIdentity(std::optional<qint64> visitorIdentifier, std::optional<QString> token);

    /// Appends one task and flushes.
    void append(QueueTask task) { append(QList<QueueTask>{std::move(task)}); }
    /// Appends the tasks and flushes. Does nothing if the list is empty.
    void append(QList<QueueTask> tasks);
    /// Does the same as `append()`, but adds the tasks before it returns. To be called on the run
    /// queue.
    void take(const QList<QueueTask> &tasks);
    /// Sends the ready tasks. If requests are in flight, this happens after they complete.
    void flush();
    /// Drops the waiting tasks. Tasks in flight are not retried. To be called on the run queue.
    void clear();

    /// Returns the waiting requests, followed by those in flight that were not cleared. If there
    /// are more than `queueLimit` together, the first ones in flight are left out. To be called on
    /// the run queue.
    QList<QueueableRequest> recordsToPersist() const;
    /// Returns whether no request is in flight and no waiting task is ready. To be called on the
    /// run queue.
    bool isIdle() const;

protected:
    /// States what happens to the tasks of a completed request.
    enum class Outcome {
        finished,
        /// They are sent again after their back-off.
        retry,
        /// The same, but the runner is disabled until the service is enabled.
        retryWhenEnabled,
    };
    /// Called when the requests of `tasks` complete. `answer` is passed on to the tasks'
    /// completions.
    using Finished = std::function<void(const QList<QueueTask> &tasks, Outcome outcome,
                                        const SimpleAnswer &answer)>;

    /// Returns the maximum number of tasks passed to one `performTasks()`.
    virtual qsizetype mostAtOnce() const = 0;
    /// Returns the minimum time between two calls of `performTasks()`.
    virtual std::chrono::milliseconds interval() const = 0;
    /// Sends the tasks. Calls `completion` once for each task, with any number of tasks per call.
    /// Called on the run queue.
    virtual void performTasks(const QList<QueueTask> &tasks, const Finished &completion) = 0;

    /// Sends the tasks in one request and evaluates its outcome. If the request would be too large,
    /// the tasks are halved, and each half is sent in this way. Tasks are retried after a status of
    /// 5xx and after any error other than a refusal (4xx). All other outcomes are final. If the
    /// service is disabled, the tasks are retried and the runner is disabled. Does nothing if the
    /// sender was destroyed. To be called on the run queue.
    void send(const QList<QueueTask> &tasks, const Finished &completion);

private:
    /// Submits the tasks' records. See `SubmissionSender::submit()`.
    Submission submit(SubmissionSender &sender, const QList<QueueTask> &tasks,
                      const Finished &completion);
    /// A server error or a failure may be temporary. A request that the service refuses would be
    /// refused again.
    static Outcome outcomeOf(const SimpleAnswer &answer);
    /// Sends the ready tasks now, or once the interval has passed. Does nothing while the runner is
    /// disabled.
    void runFlush();
    /// Schedules a flush for `m_earliestSend`.
    void flushAfterInterval();
    /// Moves the ready tasks from the waiting list to those in flight.
    QList<QueueTask> selectReadyTasks();
    /// Schedules a flush for the time when the next waiting task is ready.
    void scheduleNextRun();
    void schedule(DispatchTime nextRun);
    /// Completes or retries the tasks of a request. May be called from any thread.
    void finish(const QList<QueueTask> &tasks, Outcome outcome, const SimpleAnswer &answer);
    void removeFromFlight(const QList<QueueTask> &tasks);
    /// Appends the tasks that may be sent again and completes the others.
    void retry(const QList<QueueTask> &tasks, const SimpleAnswer &answer);
    void flushFinished();
    void log(LogLevel level, const QString &message) const;

    std::atomic<bool> m_enabled = true;
    WaitingTasks m_queue;
    QList<QueueTask> m_inFlight;
    DispatchQueue m_runQueue;
    std::weak_ptr<SubmissionSender> m_api;
    VisitorCredentials m_visitor;
    /// Whether another flush follows when the requests in flight complete.
    bool m_again = false;
    /// Tasks are not sent before this time.
    DispatchTime m_earliestSend;
    /// Whether a flush is scheduled for that time.
    bool m_waitsForInterval = false;
    QString m_name;
    qsizetype m_queueLimit;
    std::weak_ptr<QueueRunnerDelegate> m_delegate;
    /// The flush for the next waiting task. Replaced when that task changes.
    std::shared_ptr<DispatchWorkItem> m_scheduledRun;
    const Clock &m_clock;
};

} // namespace KestrioKit
