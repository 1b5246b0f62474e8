#pragma once

#include "KestrioKit/Core/Platform/ProcessLock.h"
#include "KestrioKit/Core/Queue/PersistentQueue.h"

#include <QList>

#include <memory>
#include <optional>

namespace KestrioKit {

/// A state file, with a lock that shows that its process is running.
struct LockedStateFile {
    /// `base` is the path without its extension.
    explicit LockedStateFile(const QString &base)
        : path(base + QStringLiteral(".json")), lock(base + QStringLiteral(".lock")) {}

    const QString path;
    ProcessLock lock;
};

/// The records that an ended process left in its state file.
struct LeftState {
    PersistentQueue state;
    /// The file, with its lock held so that no other process takes the same records. Absent for
    /// this process's own file.
    std::shared_ptr<LockedStateFile> file;
};

/// The state files of all processes that share the library's folder, as seen by this process.
///
/// One process owns "SubmissionQueue.json". Every other process stores its records, while it has
/// any, in "SubmissionQueue-<32 digits>.json". It becomes the owner once the previous owner has
/// ended. The owner also takes over the records that other processes leave behind. Only one thread
/// may use this object at a time. It is the place of a `StoredRecord`.
class StateFolder {
public:
    /// The result of a search.
    struct Found {
        /// Oldest first.
        QList<LeftState> states;
        /// Whether this process owns "SubmissionQueue.json". Also true if no process can lock it.
        bool owns = true;
    };

    /// Files that other processes have left behind. This process holds their locks.
    using LeftFiles = QList<std::shared_ptr<LockedStateFile>>;

    /// Files far larger than `queueLimit` records of each kind are not read.
    explicit StateFolder(qsizetype queueLimit) : m_queueLimit(queueLimit) {}

    /// Returns the stored records of `visitor`. To be called once, before any other operation.
    Found load(std::optional<qint64> visitor);
    /// Becomes the owner if the previous owner has ended. Returns the records of `visitor` that
    /// other processes left behind since.
    Found search(std::optional<qint64> visitor);

    /// Stores the state in this process's file.
    void store(const PersistentQueue &state);
    /// Removes the files of `taken`. The last state that was passed to `store()` must contain their
    /// records. If it could not be written, the files are kept, with their locks held, until a
    /// later state is.
    void removeOnceStored(const LeftFiles &taken);
    /// Removes this process's file and the files that wait for a stored state. The owner also
    /// removes the files that other processes left behind.
    void remove();

    /// Removes the temporary files that interrupted writes of any process left, if they are old.
    static void tidyUp();

    /// Removes everything that is stored, including temporary files, except the files of other
    /// running processes.
    void erase();
    /// Does the same for a process that has loaded nothing.
    static void eraseStored();

private:
    /// Returns the content of a file, or nothing if it has another version or belongs to another
    /// visitor.
    std::optional<PersistentQueue> read(const QString &path, std::optional<qint64> visitor) const;
    bool open();
    /// Returns whether the state was written.
    bool write(const PersistentQueue &state);
    /// Returns a new path for a file of a process that is not the owner, without extension.
    QString newBase() const;
    /// Returns whether this process is still the owner. Takes the lock again if it was lost and is
    /// free.
    bool keepsOwning();
    /// Becomes the owner if the previous owner has ended.
    void takeOver();
    /// Takes the lock, after creating the folder if it is missing.
    ProcessLock::Attempt lock(LockedStateFile &file, ProcessLock::Check check) const;
    LeftFiles leftFiles(ProcessLock::Check check) const;
    enum class Occasion { start, later };
    QList<LeftState> leftStates(std::optional<qint64> visitor, Occasion occasion) const;
    void removeSideFile();
    void removeTaken();

    const qsizetype m_queueLimit;
    /// The owner's file. Absent before `load()` or without a data folder.
    std::optional<LockedStateFile> m_main;
    /// This process's file while another process is the owner.
    std::optional<LockedStateFile> m_side;
    bool m_owns = false;
    /// Whether the last state was written, or was removed since.
    bool m_isStored = false;
    /// Files whose records the last state contains, while it is not written.
    LeftFiles m_taken;
};

} // namespace KestrioKit
