#pragma once

#include "KestrioKit/Queue/QueueRunner.h"

namespace KestrioKit {

/// Sends each task in a request of its own, without waiting for the ones before.
class SingleRecordQueueRunner final : public QueueRunner {
public:
    using QueueRunner::QueueRunner;

protected:
    void performTasks(const QList<QueueTask> &tasks, const Finished &completion) override;
};

} // namespace KestrioKit
