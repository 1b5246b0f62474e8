#include "KestrioKit/Core/Queue/StateFile.h"

#include "KestrioKit/Core/Platform/Threads/Atomic.h"

#include <QFile>

#include <utility>

namespace KestrioKit {

struct StateFile::Change {
    /// Absent if the file is to be removed.
    std::optional<PersistentQueue> state;
    std::shared_ptr<void> task;
};

/// The work that waits for the executor. There is at most one change, since each change replaces
/// the one before.
struct StateFile::Changes {
    explicit Changes(qsizetype queueLimit) : folder(queueLimit) {}

    struct Waiting {
        std::optional<Change> change;
        /// Files whose records the change contains. They stay here as long as nothing can be
        /// stored.
        LeftFiles taken;
    };
    Atomic<Waiting> next;
    StateFolder folder;

    void makeNext() {
        const Waiting waiting = next.mutate([](auto &all) { return std::exchange(all, {}); });
        if (!waiting.change)
            return keep(waiting.taken);
        if (!waiting.change->state)
            folder.clear();
        else if (!folder.store(*waiting.change->state))
            return keep(waiting.taken);
        for (const auto &file : waiting.taken)
            QFile::remove(file->path);
    }

    void keep(const LeftFiles &taken) {
        next.mutate([&taken](auto &all) { all.taken += taken; });
    }
};

StateFile::StateFile(SerialExecutor &executor, qsizetype queueLimit)
    : m_executor(executor), m_changes(std::make_shared<Changes>(queueLimit)) {}

StateFolder::Found StateFile::load(std::optional<qint64> visitor) {
    return m_changes->folder.load(visitor);
}

void StateFile::search(std::optional<qint64> visitor,
                       std::function<void(StateFolder::Found)> report) {
    m_executor.post([changes = m_changes, visitor, report = std::move(report)] {
        report(changes->folder.search(visitor));
    });
}

void StateFile::store(PersistentQueue state, std::shared_ptr<void> task, const LeftFiles &taken) {
    make({std::move(state), std::move(task)}, taken);
}

void StateFile::remove() {
    make({}, {});
}

void StateFile::erase(std::shared_ptr<void> task) {
    m_executor.post(
        [changes = m_changes, task = std::move(task),
         waiting = m_changes->next.mutate([](auto &all) { return std::exchange(all, {}); })] {
            changes->folder.erase();
            for (const auto &file : waiting.taken)
                QFile::remove(file->path);
        });
}

// The change and `taken` are set together: an older state does not contain the records of `taken`.
void StateFile::make(Change change, const LeftFiles &taken) {
    std::optional<Change> next(std::move(change));
    m_changes->next.mutate([&](auto &waiting) {
        // The swap lets the replaced change be destroyed after the lock is released.
        std::swap(waiting.change, next);
        waiting.taken += taken;
    });
    m_executor.post([changes = m_changes] { changes->makeNext(); });
}

} // namespace KestrioKit
