#include "KestrioKit/Queue/StateFile.h"

#include "KestrioKit/Platform/Atomic.h"
#include "KestrioKit/Platform/Storage.h"

#include <utility>

namespace KestrioKit {

namespace {

constexpr QLatin1StringView filename("SubmissionQueue");

// Far beyond what records with long texts come to; a larger file is not one of ours.
qint64 maximumSize(qsizetype queueLimit) {
    constexpr qint64 base = 256 * 1024 * 1024;
    constexpr qint64 kinds = 5;
    constexpr qint64 sizeOfRecord = 8 * 1024;
    return base + kinds * queueLimit * sizeOfRecord;
}

} // namespace

struct StateFile::Change {
    /// Absent when the file is to go.
    std::optional<PersistentQueue> state;
    std::shared_ptr<void> task;
};

/// What waits for the executor: one change, since the next one makes it void.
struct StateFile::Changes {
    Atomic<std::optional<Change>> next;

    void makeNext() {
        const std::optional<Change> change =
            next.mutate([](auto &waiting) { return std::exchange(waiting, std::nullopt); });
        if (!change)
            return;
        if (change->state)
            Storage::store(change->state, Storage::localLibraryURL(filename));
        else
            Storage::remove(filename);
    }
};

StateFile::StateFile(SerialExecutor &executor)
    : m_executor(executor), m_changes(std::make_shared<Changes>()) {}

std::optional<PersistentQueue> StateFile::load(qsizetype queueLimit) {
    return Storage::load<PersistentQueue>(Storage::localLibraryURL(filename),
                                          maximumSize(queueLimit));
}

void StateFile::store(PersistentQueue state, std::shared_ptr<void> task) {
    make({std::move(state), std::move(task)});
}

void StateFile::remove() {
    make({});
}

void StateFile::make(Change change) {
    m_changes->next.setValue(std::move(change));
    m_executor.post([changes = m_changes] { changes->makeNext(); });
}

} // namespace KestrioKit
