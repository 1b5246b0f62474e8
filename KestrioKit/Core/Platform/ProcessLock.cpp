#include "KestrioKit/Core/Platform/ProcessLock.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

// Never destroyed, since locks are released while the process ends.
struct Registry {
    std::mutex lock;
    std::vector<ProcessLock *> held;
    /// Locks whose files belong to another holder or cannot be removed. Destroying them would make
    /// Qt remove the file or log a warning.
    std::vector<std::unique_ptr<QLockFile>> abandoned;
};

Registry &registry() {
    static auto *const registry = new Registry;
    return *registry;
}

QDateTime timeOf(const QString &path) {
    return QFileInfo(path).lastModified();
}

// Qt considers a holder alive while any process of the same program has its process id. In a
// sandbox this may happen at every start-up. The kernel's lock on the file is reliable.
bool removeStale(QLockFile &lock, ProcessLock::Check check) {
    qint64 holder = 0;
    QString host;
    QString program;
    // This is the name that Qt uses for the same purpose. Without it two processes could remove a
    // stale lock at the same time, and with it a new one.
    QLockFile removal(lock.fileName() + u".rmlock"_s);
    const auto isKnown = [&] {
        return lock.getLockInfo(&holder, &host, &program);
    };
    if (lock.error() != QLockFile::LockFailedError || !isKnown() ||
        (check == ProcessLock::Check::quick && holder != QCoreApplication::applicationPid()))
        return false;
    // The result is reliable only while `removal` is locked.
    return removal.tryLock(0) && isKnown() && lock.removeStaleLockFile();
}

} // namespace

ProcessLock::ProcessLock(QString path) : m_path(std::move(path)) {}

ProcessLock::~ProcessLock() {
    const std::lock_guard guard(registry().lock);
    release();
}

ProcessLock::Attempt ProcessLock::tryLock(Check check) {
    const std::lock_guard guard(registry().lock);
    if (isOwn())
        return Attempt::held;
    auto lock = std::make_unique<QLockFile>(m_path);
    lock->setStaleLockTime(0);
    const bool succeeds = lock->tryLock(0) || (removeStale(*lock, check) && lock->tryLock(0));
    // On failure a lock held before is kept, since its file may only be unreachable for now.
    if (!succeeds && lock->error() != QLockFile::LockFailedError)
        return Attempt::failed;
    abandon();
    if (!succeeds)
        return Attempt::refused;
    m_time = timeOf(m_path);
    m_process = QCoreApplication::applicationPid();
    m_lock = std::move(lock);
    registry().held.push_back(this);
    [[maybe_unused]] static const int registered = std::atexit(releaseAll);
    return Attempt::held;
}

bool ProcessLock::isHeld() const {
    const std::lock_guard guard(registry().lock);
    return isOwn();
}

bool ProcessLock::isOwn() const {
    return m_lock && m_process == QCoreApplication::applicationPid() && timeOf(m_path) == m_time;
}

void ProcessLock::release() {
    const bool isRemovable = QFileInfo(QFileInfo(m_path).path()).isWritable();
    if (!isOwn() || !isRemovable)
        return abandon();
    m_lock.reset();
    std::erase(registry().held, this);
}

void ProcessLock::abandon() {
    if (m_lock)
        registry().abandoned.push_back(std::move(m_lock));
    std::erase(registry().held, this);
}

// Lock files that are left behind are harmless, so locks are skipped if another thread hangs in the
// file system.
void ProcessLock::releaseAll() {
    const std::unique_lock guard(registry().lock, std::try_to_lock);
    while (guard && !registry().held.empty())
        registry().held.back()->release();
}

} // namespace KestrioKit
