#pragma once

#include "KestrioKit/Core/Queue/QueueRunner.h"

namespace KestrioKit {

/// Sends each task in its own request, with at most 100 requests in flight.
class SingleRecordQueueRunner final : public QueueRunner {
public:
    using QueueRunner::QueueRunner;

protected:
    // This many requests keep every connection to the service busy.
    qsizetype mostAtOnce() const override { return 100; }
    std::chrono::milliseconds interval() const override { return {}; }
    void performTasks(const QList<QueueTask> &tasks, const Finished &completion) override;
};

} // namespace KestrioKit
