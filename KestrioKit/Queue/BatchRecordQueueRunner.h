#pragma once

#include "KestrioKit/Queue/QueueRunner.h"

namespace KestrioKit {

/// Sends all tasks that are ready in one request; they share what becomes of it.
class BatchRecordQueueRunner final : public QueueRunner {
public:
    using QueueRunner::QueueRunner;

protected:
    void performTasks(const QList<QueueTask> &tasks, const Finished &completion) override;
};

} // namespace KestrioKit
