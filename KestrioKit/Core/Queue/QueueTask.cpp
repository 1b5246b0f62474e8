#include "KestrioKit/Core/Queue/QueueTask.h"

#include <QUuid>

namespace KestrioKit {

QueueTask makeQueueTask(QueueableRequest request, const Clock &clock, SimpleCompletion completion) {
    return {QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(), std::move(request),
            std::make_shared<KestrioRetryStrategy>(clock), std::move(completion)};
}

} // namespace KestrioKit
