#include "KestrioKit/Core/Queue/SingleRecordQueueRunner.h"

namespace KestrioKit {

void SingleRecordQueueRunner::performTasks(const QList<QueueTask> &tasks,
                                           const Finished &completion) {
    for (const QueueTask &task : tasks)
        send({task}, completion);
}

} // namespace KestrioKit
