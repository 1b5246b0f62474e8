#pragma once

#include "KestrioKit/Core/Queue/QueueRunner.h"

#include <limits>

namespace KestrioKit {

/// Sends all ready tasks in one request. The tasks share its outcome. If the body would exceed 1
/// MiB, which is more than common servers accept, the tasks are halved and each half is sent in its
/// own request.
class BatchRecordQueueRunner final : public QueueRunner {
public:
    using QueueRunner::QueueRunner;

protected:
    qsizetype mostAtOnce() const override { return std::numeric_limits<qsizetype>::max(); }
    // Events that follow each other closely share a request. Sending one takes more processor time
    // than everything else that is done for an event.
    std::chrono::milliseconds interval() const override { return std::chrono::milliseconds(10); }
    void performTasks(const QList<QueueTask> &tasks, const Finished &completion) override;
};

} // namespace KestrioKit
