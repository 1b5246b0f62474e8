#include "KestrioKit/Core/Queue/BatchRecordQueueRunner.h"

namespace KestrioKit {

void BatchRecordQueueRunner::performTasks(const QList<QueueTask> &tasks,
                                          const Finished &completion) {
    send(tasks, completion);
}

} // namespace KestrioKit
