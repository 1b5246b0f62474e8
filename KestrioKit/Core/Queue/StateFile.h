#pragma once

#include "KestrioKit/Core/Platform/Threads/Executor.h"
#include "KestrioKit/Core/Queue/StateFolder.h"

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// Stores the unsent records on disk. The file executor writes the files asynchronously. If several
/// states wait to be written, only the last one is. Thread-safe.
class StateFile {
public:
    /// `executor` runs the file operations and must outlive the last of them. Files far larger than
    /// `queueLimit` records of each kind are not read.
    StateFile(SerialExecutor &executor, qsizetype queueLimit);

    /// Reads the stored records of `visitor` on the calling thread. Must be called once, before any
    /// other operation.
    StateFolder::Found load(std::optional<qint64> visitor);
    /// Searches asynchronously for records of `visitor` that other processes have left behind since
    /// the last search. Calls `report` on the executor's thread.
    void search(std::optional<qint64> visitor, std::function<void(StateFolder::Found)> report);

    /// Files that other processes have left behind. This process holds their locks.
    using LeftFiles = QList<std::shared_ptr<LockedStateFile>>;
    /// Replaces the file's content with `state`, asynchronously. `task` lives until the state is
    /// written or replaced by a later change. `taken` are the files whose records `state` now
    /// contains. They are removed once the state is written.
    void store(PersistentQueue state, std::shared_ptr<void> task, const LeftFiles &taken = {});
    /// Removes the file asynchronously.
    void remove();
    /// Removes everything that is stored, asynchronously, and discards waiting changes. `task`
    /// lives until then.
    void erase(std::shared_ptr<void> task);

private:
    struct Change;
    struct Changes;

    /// Replaces the waiting change and posts it to the executor.
    void make(Change change, const LeftFiles &taken);

    SerialExecutor &m_executor;
    std::shared_ptr<Changes> m_changes;
};

} // namespace KestrioKit
