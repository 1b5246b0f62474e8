#pragma once

#include "KestrioKit/Core/Platform/ProcessLock.h"
#include "KestrioKit/Core/Queue/PersistentQueue.h"

#include <QList>

#include <memory>
#include <optional>

namespace KestrioKit {

/// One state file, and the lock that says that it belongs to a process that lives.
struct LockedStateFile {
    /// `base` is the path without what it ends in.
    explicit LockedStateFile(const QString &base)
        : path(base + QStringLiteral(".json")), lock(base + QStringLiteral(".lock")) {}

    const QString path;
    ProcessLock lock;
};

/// What a process has left in its state file when it ended.
struct LeftState {
    PersistentQueue state;
    /// Keeps other processes from taking the same. Absent for this process's own file.
    std::shared_ptr<LockedStateFile> file;
};

/// The state files of all processes that use the library's folder, as this process sees them.
///
/// One process owns "SubmissionQueue.json". Each other one keeps its records, while it has any, in
/// "SubmissionQueue-<32 digits>.json", and becomes the owner when that one has ended. The owner
/// also takes what others leave when they end. Used by one thread at a time.
class StateFolder {
public:
    struct Found {
        /// Oldest first.
        QList<LeftState> states;
        /// Whether this process owns the stored state, or nobody can.
        bool owns = true;
    };

    /// Files that are far larger than `queueLimit` records of each kind are not read.
    explicit StateFolder(qsizetype queueLimit) : m_queueLimit(queueLimit) {}

    /// Finds what is stored for that visitor. To be called first, and once.
    Found load(std::optional<qint64> visitor);
    /// Takes over the stored state if its owner has ended, and finds what other processes have left
    /// for that visitor since.
    Found search(std::optional<qint64> visitor);

    /// Stores the state in this process's file. Returns whether it did.
    bool store(const PersistentQueue &state);
    /// Removes this process's file; the owner also removes what others have left.
    void clear();

private:
    std::optional<PersistentQueue> read(const QString &path, std::optional<qint64> visitor) const;
    QString newBase() const;
    bool keepsOwning();
    void takeOver();
    ProcessLock::Attempt lock(LockedStateFile &file, bool thorough) const;
    QList<std::shared_ptr<LockedStateFile>> leftFiles(bool thorough) const;
    QList<LeftState> leftStates(std::optional<qint64> visitor, bool isStart) const;
    void removeSideFile();

    const qsizetype m_queueLimit;
    std::optional<LockedStateFile> m_main;
    std::optional<LockedStateFile> m_side;
    bool m_owns = false;
};

} // namespace KestrioKit
