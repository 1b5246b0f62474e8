#pragma once

#include "KestrioKit/Core/Queue/KestrioRetryStrategy.h"
#include "KestrioKit/Core/Queue/QueueableRequest.h"
#include "KestrioKit/Core/Queue/SubmissionSender.h"

#include <memory>

namespace KestrioKit {

/// One request that waits to be sent. Copies share their retry state.
struct QueueTask {
    /// A new UUID (RFC 9562), upper case: what tells the task from others, never stored.
    QString id;
    QueueableRequest request;
    std::shared_ptr<KestrioRetryStrategy> retryStrategy;
    /// Called at most once, on the main queue, when the task is finished for good: sent, refused,
    /// impossible to build or given up. Not called for a task that is dropped unsent.
    SimpleCompletion completion;
};

/// A task with a new identity and a fresh budget of sends.
QueueTask makeQueueTask(QueueableRequest request, const Clock &clock,
                        SimpleCompletion completion = {});

} // namespace KestrioKit
