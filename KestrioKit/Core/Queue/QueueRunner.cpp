#include "KestrioKit/Core/Queue/QueueRunner.h"

#include "KestrioKit/Core/Platform/HTTP/HTTPStatus.h"

#include <QSet>

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

void callCompletion(const QueueTask &task, const SimpleAnswer &answer) {
    if (!task.completion)
        return;
    DispatchQueue::main().async([completion = task.completion, answer] { completion(answer); });
}

} // namespace

QueueRunner::QueueRunner(std::weak_ptr<SubmissionSender> api, DispatchQueue runQueue,
                         const Clock &clock, QString name, qsizetype queueLimit)
    : m_runQueue(std::move(runQueue)),
      m_api(std::move(api)),
      m_name(std::move(name)),
      m_queueLimit(queueLimit),
      m_clock(clock) {}

void QueueRunner::setIdentity(std::optional<qint64> visitorIdentifier,
                              std::optional<QString> token) {
    m_visitor = {visitorIdentifier, std::move(token)};
}

void QueueRunner::append(QList<QueueTask> tasks) {
    if (tasks.isEmpty())
        return;
    m_runQueue.async([self = shared_from_this(), tasks = std::move(tasks)] { self->take(tasks); });
}

void QueueRunner::take(const QList<QueueTask> &tasks) {
    if (tasks.isEmpty())
        return;
    for (const QueueTask &task : tasks)
        m_queue.append(task);
    const qsizetype dropped = m_queue.dropOldest(m_queueLimit);
    if (const auto delegate = m_delegate.lock(); delegate && dropped > 0)
        delegate->tasksDropped(dropped);
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
    QList<QueueableRequest> inFlight;
    for (const QueueTask &task : m_inFlight) {
        // Cleared tasks must not be restored from the file.
        if (task.retryStrategy->canRetry())
            inFlight.append(task.request);
    }
    // The next start-up would drop records beyond the limit. The oldest ones are in flight and may
    // have arrived, so they are left out first.
    const qsizetype room = m_queueLimit - m_queue.size();
    return m_queue.requests() + inFlight.last(std::min(inFlight.size(), room));
}

bool QueueRunner::isIdle() const {
    return m_inFlight.isEmpty() && m_queue.nextAttempt() > m_clock.now();
}

void QueueRunner::runFlush() {
    if (!m_enabled)
        return;
    if (!m_inFlight.isEmpty()) {
        m_again = true;
        return;
    }
    // A full queue does not wait, since it drops the oldest task when the next one comes.
    if (m_clock.now() < m_earliestSend && m_queue.size() < m_queueLimit)
        return flushAfterInterval();
    const QList<QueueTask> ready = selectReadyTasks();
    // More tasks may be ready than can be sent together.
    m_again = m_queue.nextAttempt() <= m_clock.now();
    scheduleNextRun();
    if (ready.isEmpty()) {
        log(LogLevel::fine, u"No tasks ready. Remaining in queue %1"_s.arg(m_queue.size()));
        return;
    }
    m_earliestSend = {m_clock.now().sinceReference + interval()};
    log(LogLevel::info,
        u"Attempting %1 tasks. Remaining in queue %2"_s.arg(ready.size()).arg(m_queue.size()));
    performTasks(
        ready, [self = shared_from_this()](const auto &tasks, Outcome outcome, const auto &answer) {
            self->finish(tasks, outcome, answer);
        });
}

void QueueRunner::flushAfterInterval() {
    if (m_waitsForInterval)
        return;
    m_waitsForInterval = true;
    m_runQueue.asyncAfter(m_earliestSend,
                          std::make_shared<DispatchWorkItem>([runner = weak_from_this()] {
                              if (const auto self = runner.lock()) {
                                  self->m_waitsForInterval = false;
                                  self->runFlush();
                              }
                          }));
}

QList<QueueTask> QueueRunner::selectReadyTasks() {
    m_inFlight = m_queue.takeReady(m_clock.now(), mostAtOnce());
    return m_inFlight;
}

void QueueRunner::scheduleNextRun() {
    m_runQueue.async([self = shared_from_this()] {
        const DispatchTime next = self->m_queue.nextAttempt();
        if (next == DispatchTime::distantFuture())
            return;
        self->schedule(next);
        self->log(LogLevel::fine,
                  u"Next scheduled run: %1. Remaining in queue: %2"_s.arg(printedForm(next))
                      .arg(self->m_queue.size()));
    });
}

void QueueRunner::schedule(DispatchTime nextRun) {
    m_runQueue.async([self = shared_from_this(), nextRun] {
        if (self->m_scheduledRun)
            self->m_scheduledRun->cancel();
        // A run scheduled far ahead must not keep the runner alive.
        self->m_scheduledRun =
            std::make_shared<DispatchWorkItem>([runner = self->weak_from_this()] {
                if (const auto strong = runner.lock())
                    strong->flush();
            });
        self->m_runQueue.asyncAfter(nextRun, self->m_scheduledRun);
    });
}

QueueRunner::Outcome QueueRunner::outcomeOf(const SimpleAnswer &answer) {
    const HTTPStatusClass status = statusClass(answer.response ? answer.response->statusCode : 0);
    if (status == HTTPStatusClass::serverError)
        return Outcome::retry;
    if (status == HTTPStatusClass::clientError || !answer.error)
        return Outcome::finished;
    return isDisabledError(*answer.error) ? Outcome::retryWhenEnabled : Outcome::retry;
}

void QueueRunner::send(const QList<QueueTask> &tasks, const Finished &completion) {
    const std::shared_ptr<SubmissionSender> sender = m_api.lock();
    if (!sender)
        return;
    const qsizetype half = tasks.size() / 2;
    switch (submit(*sender, tasks, completion)) {
    case Submission::started:
        break;
    case Submission::impossible:
        completion(tasks, Outcome::finished, {});
        break;
    case Submission::tooLarge:
        send(tasks.first(half), completion);
        send(tasks.sliced(half), completion);
        break;
    }
}

Submission QueueRunner::submit(SubmissionSender &sender, const QList<QueueTask> &tasks,
                               const Finished &completion) {
    QList<QueueableRequest> records;
    records.reserve(tasks.size());
    for (const QueueTask &task : tasks)
        records.append(task.request);
    return sender.submit(
        records, m_visitor,
        [self = shared_from_this(), tasks, completion](const SimpleAnswer &answer) {
            const Outcome outcome = outcomeOf(answer);
            if (outcome == Outcome::retryWhenEnabled)
                self->m_enabled = false;
            completion(tasks, outcome, answer);
        });
}

// One block moves the tasks, so that a save never finds a task in neither list.
void QueueRunner::finish(const QList<QueueTask> &tasks, Outcome outcome,
                         const SimpleAnswer &answer) {
    m_runQueue.async([self = shared_from_this(), tasks, outcome, answer] {
        self->removeFromFlight(tasks);
        if (outcome != Outcome::finished) {
            self->retry(tasks, answer);
        } else {
            for (const QueueTask &task : tasks)
                callCompletion(task, answer);
        }
        self->flushFinished();
    });
}

void QueueRunner::removeFromFlight(const QList<QueueTask> &tasks) {
    QSet<QString> finished;
    for (const QueueTask &task : tasks)
        finished.insert(task.id);
    m_inFlight.removeIf([&finished](const QueueTask &task) { return finished.contains(task.id); });
    if (m_inFlight.isEmpty() && m_again) {
        m_again = false;
        flush();
    }
}

void QueueRunner::retry(const QList<QueueTask> &tasks, const SimpleAnswer &answer) {
    QList<QueueTask> again;
    for (const QueueTask &task : tasks) {
        task.retryStrategy->failure();
        if (task.retryStrategy->canRetry()) {
            log(LogLevel::info, u"Re-enqueuing task"_s);
            again.append(task);
        } else {
            callCompletion(task, answer);
        }
    }
    take(again);
}

void QueueRunner::flushFinished() {
    log(LogLevel::info, u"Flush finished. Remaining in queue %1"_s.arg(m_queue.size()));
    // Each save writes all records. While many tasks wait, a save runs once per group of requests
    // instead of once per request.
    const bool manyWait = m_queue.size() > defaultQueueLimit;
    const auto delegate = m_delegate.lock();
    if (delegate && (m_inFlight.isEmpty() || !manyWait))
        delegate->save();
}

void QueueRunner::log(LogLevel level, const QString &message) const {
    KSLog(level, u"Queue %1. %2"_s.arg(m_name, message));
}

} // namespace KestrioKit
