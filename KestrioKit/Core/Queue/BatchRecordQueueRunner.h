#pragma once

#include "KestrioKit/Core/Queue/QueueRunner.h"

#include <limits>

namespace KestrioKit {

/// Sends all tasks that are ready in one request; they share what becomes of it. Where its body
/// would be larger than services take, each half of the tasks has a request of its own.
class BatchRecordQueueRunner final : public QueueRunner {
public:
    using QueueRunner::QueueRunner;

protected:
    qsizetype mostAtOnce() const override { return std::numeric_limits<qsizetype>::max(); }
    void performTasks(const QList<QueueTask> &tasks, const Finished &completion) override;
};

} // namespace KestrioKit
