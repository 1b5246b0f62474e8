#pragma once

#include "KestrioKit/Core/Queue/QueueTask.h"

#include <QList>

#include <map>
#include <set>

namespace KestrioKit {

/// The waiting tasks of a runner, in order of arrival, with the time when each may be sent. Only
/// `clear()` and `requests()` take time in proportion to the number of waiting tasks.
class WaitingTasks {
public:
    /// Returns the number of waiting tasks.
    qsizetype size() const { return qsizetype(m_tasks.size()); }

    /// Appends a task. The time when it may be sent is read from its retry strategy now.
    void append(const QueueTask &task);
    /// Drops the oldest tasks until at most `limit` are left. Returns the number of dropped tasks.
    qsizetype dropOldest(qsizetype limit);
    /// Drops all tasks.
    void clear();

    /// Returns the earliest time when a task may be sent, or the distant future if there is none.
    DispatchTime nextAttempt() const;
    /// Removes and returns the tasks that may be sent at `now`, in order of arrival. Returns at
    /// most `most` tasks: those that have been ready longest.
    QList<QueueTask> takeReady(DispatchTime now, qsizetype most);

    /// Returns the requests of all tasks, in order of arrival.
    QList<QueueableRequest> requests() const;

private:
    using Number = quint64;
    struct Waiting {
        QueueTask task;
        DispatchTime nextAttempt;
    };

    std::map<Number, Waiting> m_tasks;
    std::set<std::pair<DispatchTime, Number>> m_schedule;
    Number m_lastNumber = 0;
};

} // namespace KestrioKit
