#include "KestrioKit/Queue/QueueRunner.h"

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr int firstClientError = 400;
constexpr int firstServerError = 500;
constexpr int lastServerError = 599;

enum class Outcome { finished, retry, retryWhenEnabled };

// A server error or a failure may pass; a request that the service refuses never will.
Outcome outcome(const std::optional<HTTPURLResponse> &response, const std::optional<Error> &error) {
    const int status = response ? response->statusCode : 0;
    if (status >= firstServerError && status <= lastServerError)
        return Outcome::retry;
    const bool refused = status >= firstClientError && status < firstServerError;
    if (refused || !error)
        return Outcome::finished;
    return isDisabledError(*error) ? Outcome::retryWhenEnabled : Outcome::retry;
}

DispatchTime nextAttempt(const QueueTask &task) {
    return task.retryStrategy->nextAttempt().value_or(DispatchTime::distantFuture());
}

void callCompletion(const QueueTask &task, const std::optional<HTTPURLResponse> &response,
                    const std::optional<Error> &error) {
    if (!task.completion)
        return;
    DispatchQueue::main().async(
        [completion = task.completion, response, error] { completion(response, error); });
}

} // namespace

QueueRunner::QueueRunner(std::weak_ptr<SubmissionSender> api, DispatchQueue runQueue,
                         const Clock &clock, QString name)
    : m_runQueue(std::move(runQueue)),
      m_api(std::move(api)),
      m_name(std::move(name)),
      m_clock(clock) {}

void QueueRunner::setIdentity(std::optional<qint64> visitorIdentifier,
                              std::optional<QString> token) {
    m_visitorIdentifier = visitorIdentifier;
    m_visitorToken = std::move(token);
}

std::unique_ptr<const KestrioServiceRequests> QueueRunner::networkRequests() const {
    const std::shared_ptr<SubmissionSender> sender = m_api.lock();
    return sender ? sender->networkRequests().forVisitor(m_visitorIdentifier) : nullptr;
}

void QueueRunner::append(QList<QueueTask> tasks) {
    if (tasks.isEmpty())
        return;
    m_runQueue.async([self = shared_from_this(), tasks = std::move(tasks)] { self->take(tasks); });
}

void QueueRunner::take(const QList<QueueTask> &tasks) {
    if (tasks.isEmpty())
        return;
    m_queue.append(tasks);
    if (const qsizetype surplus = m_queue.size() - queueLimit; surplus > 0)
        m_queue.remove(0, surplus);
    log(LogLevel::fine, u"Task appended. Total %1"_s.arg(m_queue.size()));
    flush();
}

void QueueRunner::flush() {
    m_runQueue.async([self = shared_from_this()] { self->runFlush(); });
}

void QueueRunner::clear() {
    log(LogLevel::debug, u"Clearing. Discarding %1 tasks."_s.arg(m_queue.size()));
    m_queue.clear();
    for (const QueueTask &task : std::as_const(m_inFlight))
        task.retryStrategy->invalidate();
}

QList<QueueableRequest> QueueRunner::recordsToPersist() const {
    QList<QueueableRequest> records;
    records.reserve(m_queue.size() + m_inFlight.size());
    for (const QueueTask &task : m_queue)
        records.append(task.request);
    for (const QueueTask &task : m_inFlight) {
        // What was cleared must not come back from the file either.
        if (task.retryStrategy->canRetry())
            records.append(task.request);
    }
    // No more than a later start would take: what is in the file is what will be sent.
    return records.size() > queueLimit ? records.last(queueLimit) : records;
}

bool QueueRunner::isIdle() const {
    return m_inFlight.isEmpty() &&
           std::none_of(m_queue.begin(), m_queue.end(),
                        [this](const QueueTask &task) { return isReady(task); });
}

void QueueRunner::runFlush() {
    if (!m_enabled)
        return;
    if (!m_inFlight.isEmpty()) {
        m_again = true;
        return;
    }
    const QList<QueueTask> ready = selectReadyTasks();
    scheduleNextRun();
    if (ready.isEmpty()) {
        log(LogLevel::fine, u"No tasks ready. Remaining in queue %1"_s.arg(m_queue.size()));
        return;
    }
    log(LogLevel::info,
        u"Attempting %1 tasks. Remaining in queue %2"_s.arg(ready.size()).arg(m_queue.size()));
    performTasks(ready, [self = shared_from_this()](const auto &tasks, bool retry,
                                                    const auto &response, const auto &error) {
        self->finish(tasks, retry, response, error);
    });
}

bool QueueRunner::isReady(const QueueTask &task) const {
    // In this order: a task that may be sent at once says so with the time of the question.
    const DispatchTime next = nextAttempt(task);
    return next <= m_clock.now();
}

QList<QueueTask> QueueRunner::selectReadyTasks() {
    QList<QueueTask> ready;
    QList<QueueTask> rest;
    for (const QueueTask &task : std::as_const(m_queue))
        (isReady(task) ? ready : rest).append(task);
    m_queue = rest;
    m_inFlight.append(ready);
    return ready;
}

void QueueRunner::scheduleNextRun() {
    m_runQueue.async([self = shared_from_this()] {
        const auto &queue = self->m_queue;
        const auto earliest = std::min_element(queue.begin(), queue.end(), [](auto &a, auto &b) {
            return nextAttempt(a) < nextAttempt(b);
        });
        if (earliest == queue.end() || nextAttempt(*earliest) == DispatchTime::distantFuture())
            return;
        const DispatchTime next = nextAttempt(*earliest);
        self->schedule(next);
        self->log(LogLevel::fine,
                  u"Next scheduled run: %1. Remaining in queue: %2"_s.arg(printedForm(next))
                      .arg(queue.size()));
    });
}

void QueueRunner::schedule(DispatchTime nextRun) {
    m_runQueue.async([self = shared_from_this(), nextRun] {
        if (self->m_scheduledRun)
            self->m_scheduledRun->cancel();
        // Weakly held: a run far ahead must not keep the runner.
        self->m_scheduledRun =
            std::make_shared<DispatchWorkItem>([runner = self->weak_from_this()] {
                if (const auto strong = runner.lock())
                    strong->flush();
            });
        self->m_runQueue.asyncAfter(nextRun, self->m_scheduledRun);
    });
}

void QueueRunner::send(const URLRequest &request, const QList<QueueTask> &tasks,
                       const Finished &completion) {
    const std::shared_ptr<SubmissionSender> sender = m_api.lock();
    if (!sender)
        return;
    sender->sendSimpleRequest(
        request, m_visitorToken,
        [self = shared_from_this(), tasks, completion](const auto &response, const auto &error) {
            const Outcome what = outcome(response, error);
            if (what == Outcome::retryWhenEnabled)
                self->m_enabled = false;
            completion(tasks, what != Outcome::finished, response, error);
        });
}

// In one block, so that a save from another thread finds each task in one of the lists.
void QueueRunner::finish(const QList<QueueTask> &tasks, bool retryTasks,
                         const std::optional<HTTPURLResponse> &response,
                         const std::optional<Error> &error) {
    m_runQueue.async([self = shared_from_this(), tasks, retryTasks, response, error] {
        self->removeFromFlight(tasks);
        for (const QueueTask &task : tasks) {
            if (retryTasks)
                self->retry(task, response, error);
            else
                callCompletion(task, response, error);
        }
        self->flushFinished();
    });
}

void QueueRunner::removeFromFlight(const QList<QueueTask> &tasks) {
    m_inFlight.removeIf([&tasks](const QueueTask &task) {
        return std::any_of(tasks.begin(), tasks.end(),
                           [&task](const QueueTask &finished) { return finished.id == task.id; });
    });
    if (m_inFlight.isEmpty() && m_again) {
        m_again = false;
        flush();
    }
}

void QueueRunner::retry(const QueueTask &task, const std::optional<HTTPURLResponse> &response,
                        const std::optional<Error> &error) {
    task.retryStrategy->failure();
    if (!task.retryStrategy->canRetry()) {
        callCompletion(task, response, error);
        return;
    }
    log(LogLevel::info, u"Re-enqueuing task"_s);
    take({task});
}

void QueueRunner::flushFinished() {
    log(LogLevel::info, u"Flush finished. Remaining in queue %1"_s.arg(m_queue.size()));
    if (const auto delegate = m_delegate.lock())
        delegate->save();
}

void QueueRunner::log(LogLevel level, const QString &message) const {
    KSLog(level, u"Queue %1. %2"_s.arg(m_name, message));
}

} // namespace KestrioKit
