#pragma once

#include <QDateTime>
#include <QLockFile>
#include <QString>

#include <memory>

namespace KestrioKit {

/// A lock file that one object, of all processes, can hold. It is let go when the object goes or
/// the process ends, in whatever way. A forked child does not hold what its parent holds. Prints
/// nothing, and never waits for another holder. Thread-safe.
class ProcessLock {
public:
    enum class Attempt {
        held,
        /// Somebody else holds it.
        refused,
        /// The file cannot be made: the disk is full, read-only or gone.
        failed,
    };

    /// `path` is the file, in a folder that should exist.
    explicit ProcessLock(QString path);
    ~ProcessLock();
    Q_DISABLE_COPY_MOVE(ProcessLock)

    /// Takes the lock, unless it is held already. A `thorough` attempt also finds out a dead
    /// holder whose process number another process has by now; it costs a second file.
    Attempt tryLock(bool thorough);

    /// Whether this object holds the lock, and nobody has removed its file.
    bool isHeld() const;

private:
    // With the lock of what all objects share held.
    bool isOwn() const;
    void release();
    void abandon();
    static void releaseAll();

    const QString m_path;
    std::unique_ptr<QLockFile> m_lock;
    /// Of the file, as it was taken.
    QDateTime m_time;
    qint64 m_process = 0;
};

} // namespace KestrioKit
