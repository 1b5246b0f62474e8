#include "KestrioKit/Queue/SingleRecordQueueRunner.h"

namespace KestrioKit {

void SingleRecordQueueRunner::performTasks(const QList<QueueTask> &tasks,
                                           const Finished &completion) {
    const std::shared_ptr<SubmissionSender> sender = api();
    if (!sender)
        return;
    for (const QueueTask &task : tasks) {
        const std::optional<URLRequest> request =
            createRequest(task.request, sender->networkRequests());
        if (request)
            send(*request, {task}, completion);
        else
            completion({task}, false, std::nullopt, std::nullopt);
    }
}

} // namespace KestrioKit
