#pragma once

#include "KestrioKit/Core/Queue/QueueTask.h"

#include <QList>

#include <map>
#include <set>

namespace KestrioKit {

/// The tasks of a runner that wait, in the order in which they came, and when each may be sent.
/// Every operation but those on all tasks takes no longer when many wait.
class WaitingTasks {
public:
    qsizetype size() const { return qsizetype(m_tasks.size()); }

    /// Adds a task behind the others.
    void append(const QueueTask &task);
    /// Drops the oldest tasks until `limit` are left; returns how many that were.
    qsizetype dropOldest(qsizetype limit);
    void clear();

    /// When the first of the tasks may be sent; the distant future when none ever may.
    DispatchTime nextAttempt() const;
    /// Takes those out that may be sent at `now`, in their order: no more than `most`, those that
    /// have been ready longest.
    QList<QueueTask> takeReady(DispatchTime now, qsizetype most);

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
