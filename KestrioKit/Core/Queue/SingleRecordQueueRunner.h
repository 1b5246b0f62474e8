#pragma once

#include "KestrioKit/Core/Queue/QueueRunner.h"

namespace KestrioKit {

/// Sends each task in a request of its own, a hundred at a time.
class SingleRecordQueueRunner final : public QueueRunner {
public:
    using QueueRunner::QueueRunner;

protected:
    // Enough to keep every connection to the service busy.
    qsizetype mostAtOnce() const override { return 100; }
    void performTasks(const QList<QueueTask> &tasks, const Finished &completion) override;
};

} // namespace KestrioKit
