#include "KestrioKit/Core/Queue/SingleRecordQueueRunner.h"

namespace KestrioKit {

void SingleRecordQueueRunner::performTasks(const QList<QueueTask> &tasks,
                                           const Finished &completion) {
    const auto requests = networkRequests();
    if (!requests)
        return;
    for (const QueueTask &task : tasks) {
        const std::optional<URLRequest> request = createRequest(task.request, *requests);
        if (request)
            send(*request, {task}, completion);
        else
            completion({task}, Outcome::finished, {});
    }
}

} // namespace KestrioKit
