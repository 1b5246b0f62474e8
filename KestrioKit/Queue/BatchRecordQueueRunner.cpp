#include "KestrioKit/Queue/BatchRecordQueueRunner.h"

namespace KestrioKit {

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
    if (request)
        send(*request, tasks, completion);
    else
        completion(tasks, false, std::nullopt, std::nullopt);
}

} // namespace KestrioKit
