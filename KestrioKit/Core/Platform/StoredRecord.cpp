#include "KestrioKit/Core/Platform/StoredRecord.h"

#include "KestrioKit/Core/Platform/Threads/Atomic.h"

#include <atomic>

namespace KestrioKit {

struct StoredRecordChanges::Shared {
    explicit Shared(Block tidying) : tidyUp(std::move(tidying)) {}

    struct Waiting {
        /// Not replaced by a later change. Made before `change`.
        Block lasting;
        Block change;
    };
    Atomic<Waiting> waiting;
    /// The number of posted blocks that have not ended. A block may find that the one before it has
    /// already made its change.
    std::atomic<int> posted = 0;
    /// Empty after the first change. Only used by the executor.
    Block tidyUp;

    void makeNext() {
        const Waiting next = waiting.mutate([](auto &all) { return std::exchange(all, {}); });
        if (next.lasting)
            next.lasting();
        if (next.change)
            next.change();
        if (const Block tidying = std::exchange(tidyUp, {}))
            tidying();
    }
};

StoredRecordChanges::StoredRecordChanges(SerialExecutor &executor, Block tidyUp)
    : m_executor(executor), m_shared(std::make_shared<Shared>(std::move(tidyUp))) {}

// The swaps let what is replaced be destroyed after the lock is released.
void StoredRecordChanges::make(Block change) {
    m_shared->waiting.mutate([&change](auto &waiting) { waiting.change.swap(change); });
    postChange();
}

void StoredRecordChanges::makeAlways(Block change) {
    Block discarded;
    m_shared->waiting.mutate([&](auto &waiting) {
        waiting.change.swap(discarded);
        waiting.lasting.swap(change);
    });
    postChange();
}

void StoredRecordChanges::postChange() {
    ++m_shared->posted;
    m_executor.post([shared = m_shared] {
        shared->makeNext();
        --shared->posted;
    });
}

void StoredRecordChanges::run(Block block) {
    m_executor.post(std::move(block));
}

bool StoredRecordChanges::isChanging() const {
    return m_shared->posted > 0;
}

} // namespace KestrioKit
