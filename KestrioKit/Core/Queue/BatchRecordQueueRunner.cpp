#include "KestrioKit/Core/Queue/BatchRecordQueueRunner.h"

namespace KestrioKit {

namespace {

// The default limit of common web servers, in bytes. They refuse larger bodies, and refused records
// are not retried.
constexpr qsizetype largestBody = 1024 * 1024;

} // namespace

void BatchRecordQueueRunner::performTasks(const QList<QueueTask> &tasks,
                                          const Finished &completion) {
    const auto requests = networkRequests();
    if (!requests)
        return;
    QList<QueueableRequest> records;
    records.reserve(tasks.size());
    for (const QueueTask &task : tasks)
        records.append(task.request);
    const std::optional<URLRequest> request = createBatchRequest(records, *requests);
    if (request && request->body.size() > largestBody && tasks.size() > 1) {
        performTasks(tasks.first(tasks.size() / 2), completion);
        performTasks(tasks.sliced(tasks.size() / 2), completion);
    } else if (request)
        send(*request, tasks, completion);
    else
        completion(tasks, Outcome::finished, {});
}

} // namespace KestrioKit
