#pragma once

#include "KestrioKit/Core/Platform/Threads/Executor.h"
#include "KestrioKit/Core/Queue/StateFolder.h"

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// What is still to be sent, on disk. Writing happens later, on a thread where nobody waits for the
/// disk, and only the last state of all that wait there is written. Thread-safe.
class StateFile {
public:
    /// `executor` runs what touches the file, and must outlive this object's last block. A file
    /// that is far larger than `queueLimit` records of each kind is not read.
    StateFile(SerialExecutor &executor, qsizetype queueLimit);

    /// What is stored for that visitor, read on the calling thread. To be called once, before any
    /// other operation.
    StateFolder::Found load(std::optional<qint64> visitor);
    /// Calls `report` on the executor's thread with what other processes have left since.
    void search(std::optional<qint64> visitor, std::function<void(StateFolder::Found)> report);

    using LeftFiles = QList<std::shared_ptr<LockedStateFile>>;
    /// Has the state stored in place of the one in the file. `task` is kept until then, or until
    /// the next change makes this one void. `taken` are the files whose records are now in the
    /// state: they are removed once it is stored.
    void store(PersistentQueue state, std::shared_ptr<void> task, const LeftFiles &taken = {});
    /// Has the file removed.
    void remove();

private:
    struct Change;
    struct Changes;

    void make(Change change, const LeftFiles &taken);

    SerialExecutor &m_executor;
    std::shared_ptr<Changes> m_changes;
};

} // namespace KestrioKit
