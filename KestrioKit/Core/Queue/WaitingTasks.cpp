#include "KestrioKit/Core/Queue/WaitingTasks.h"

namespace KestrioKit {

// Reading the time once is enough: it does not change while the task waits.
void WaitingTasks::append(const QueueTask &task) {
    const DispatchTime next =
        task.retryStrategy->nextAttempt().value_or(DispatchTime::distantFuture());
    const Number number = ++m_lastNumber;
    m_tasks.emplace_hint(m_tasks.end(), number, Waiting{task, next});
    m_schedule.emplace(next, number);
}

qsizetype WaitingTasks::dropOldest(qsizetype limit) {
    qsizetype dropped = 0;
    for (; size() > limit; ++dropped) {
        const auto oldest = m_tasks.begin();
        m_schedule.erase({oldest->second.nextAttempt, oldest->first});
        m_tasks.erase(oldest);
    }
    return dropped;
}

void WaitingTasks::clear() {
    m_tasks.clear();
    m_schedule.clear();
}

DispatchTime WaitingTasks::nextAttempt() const {
    return m_schedule.empty() ? DispatchTime::distantFuture() : m_schedule.begin()->first;
}

QList<QueueTask> WaitingTasks::takeReady(DispatchTime now, qsizetype most) {
    std::map<Number, Waiting> ready;
    while (qsizetype(ready.size()) < most && nextAttempt() <= now) {
        const auto first = m_schedule.begin();
        ready.insert(m_tasks.extract(first->second));
        m_schedule.erase(first);
    }
    QList<QueueTask> tasks;
    tasks.reserve(qsizetype(ready.size()));
    for (auto &[number, waiting] : ready)
        tasks.append(std::move(waiting.task));
    return tasks;
}

QList<QueueableRequest> WaitingTasks::requests() const {
    QList<QueueableRequest> requests;
    requests.reserve(size());
    for (const auto &[number, waiting] : m_tasks)
        requests.append(waiting.task.request);
    return requests;
}

} // namespace KestrioKit
