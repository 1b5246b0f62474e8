#pragma once

#include "KestrioKit/Core/Queue/KestrioRetryStrategy.h"
#include "KestrioKit/Core/Queue/QueueableRequest.h"
#include "KestrioKit/Core/Queue/SubmissionSender.h"

#include <memory>

namespace KestrioKit {

/// A request in the queue. Copies share their retry state.
struct QueueTask {
    /// A UUID (RFC 9562) in upper case that identifies the task. It is never stored.
    QString id;
    QueueableRequest request;
    /// Decides whether and when the task is sent again.
    std::shared_ptr<KestrioRetryStrategy> retryStrategy;
    /// Called at most once, on the main queue, when the task is completed: it was sent, it was
    /// refused, its request could not be built, or its retries are used up. Not called for a task
    /// that is dropped before it is sent. May be empty.
    SimpleCompletion completion;
};

/// Returns a task with a new `id` and all its attempts left. `clock` must outlive the task.
QueueTask makeQueueTask(QueueableRequest request, const Clock &clock,
                        SimpleCompletion completion = {});

} // namespace KestrioKit
