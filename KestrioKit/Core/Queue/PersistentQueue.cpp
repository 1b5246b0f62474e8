#include "KestrioKit/Core/Queue/PersistentQueue.h"

namespace KestrioKit {

bool PersistentQueue::hasMessages() const {
    return std::apply(
        [this](const auto &...kind) { return (!(this->*kind.stored).isEmpty() || ...); },
        recordKinds);
}

bool PersistentQueue::fitsBeside(const PersistentQueue &other, qsizetype limit) const {
    return std::apply(
        [&](const auto &...kind) {
            return ((((this->*kind.stored).size() + (other.*kind.stored).size()) <= limit) && ...);
        },
        recordKinds);
}

} // namespace KestrioKit
