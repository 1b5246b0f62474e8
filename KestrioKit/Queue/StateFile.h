#pragma once

#include "KestrioKit/Platform/Executor.h"
#include "KestrioKit/Queue/PersistentQueue.h"

#include <memory>
#include <optional>

namespace KestrioKit {

/// What is still to be sent, on disk. Writing happens later, on a thread where nobody waits for the
/// disk, and only the last state of all that wait there is written. Thread-safe.
class StateFile {
public:
    /// `executor` runs what touches the file, and must outlive this object's last block.
    explicit StateFile(SerialExecutor &executor);

    /// What the file holds now, read on the calling thread; absent when it cannot be read, or is
    /// far larger than `queueLimit` records of each kind are.
    static std::optional<PersistentQueue> load(qsizetype queueLimit);

    /// Has the state stored in place of the one in the file. `task` is kept until then, or until
    /// the next change makes this one void.
    void store(PersistentQueue state, std::shared_ptr<void> task);
    /// Has the file removed.
    void remove();

private:
    struct Change;
    struct Changes;

    void make(Change change);

    SerialExecutor &m_executor;
    std::shared_ptr<Changes> m_changes;
};

} // namespace KestrioKit
