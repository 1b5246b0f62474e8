#pragma once

#include <QDateTime>
#include <QLockFile>
#include <QString>

#include <memory>

namespace KestrioKit {

/// A lock file that only one object at a time can hold, across all processes. The lock is released
/// when the object is destroyed or when the process ends in any way. A forked child does not hold
/// its parent's locks. Logs nothing and never waits for another holder. Thread-safe.
class ProcessLock {
public:
    /// The result of `tryLock()`.
    enum class Attempt {
        held,
        /// Another object or process holds the lock.
        refused,
        /// The file cannot be created, for example because the disk is full, read-only or missing.
        failed,
    };

    /// How `tryLock()` finds out whether the holder is alive.
    enum class Check {
        quick,
        /// Also detects a dead holder whose process id now belongs to another process. This needs
        /// a second file.
        thorough,
    };

    /// `path` is the path of the lock file. Its folder should exist.
    explicit ProcessLock(QString path);
    ~ProcessLock();
    Q_DISABLE_COPY_MOVE(ProcessLock)

    /// Takes the lock if this object does not hold it yet.
    Attempt tryLock(Check check);

    /// Returns whether this object holds the lock and its file has not been removed.
    bool isHeld() const;

private:
    // Called with the lock of the shared registry held, except for `releaseAll()`.
    bool isOwn() const;
    /// Releases the lock and removes its file. Abandons the lock instead if the file belongs to
    /// another holder or cannot be removed.
    void release();
    /// Gives up the lock and leaves its file alone.
    void abandon();
    /// Releases the locks of all objects at the end of the process. Takes the registry's lock
    /// itself.
    static void releaseAll();

    const QString m_path;
    std::unique_ptr<QLockFile> m_lock;
    /// The modification time of the file when the lock was taken.
    QDateTime m_time;
    /// The id of the process that took the lock.
    qint64 m_process = 0;
};

} // namespace KestrioKit
