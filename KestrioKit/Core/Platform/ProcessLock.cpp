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

// Never destroyed: locks are let go while the process ends.
struct Registry {
    std::mutex lock;
    std::vector<ProcessLock *> held;
    /// Locks whose files are somebody else's, or cannot be removed. Qt would do so, or complain.
    std::vector<std::unique_ptr<QLockFile>> abandoned;
};

Registry &registry() {
    static auto *const registry = new Registry;
    return *registry;
}

QDateTime timeOf(const QString &path) {
    return QFileInfo(path).lastModified();
}

// Qt believes a holder to live while any process of the same program has its number. In a sandbox
// that may be the case at every start. The kernel knows better, and is asked here.
bool removeStale(QLockFile &lock, bool thorough) {
    qint64 holder = 0;
    QString host;
    QString program;
    // The name under which Qt does the same: two that remove at a time could remove a new lock.
    QLockFile removal(lock.fileName() + u".rmlock"_s);
    const auto isKnown = [&] {
        return lock.getLockInfo(&holder, &host, &program);
    };
    if (lock.error() != QLockFile::LockFailedError || !isKnown() ||
        (!thorough && holder != QCoreApplication::applicationPid()))
        return false;
    // Known only once it is locked.
    return removal.tryLock(0) && isKnown() && lock.removeStaleLockFile();
}

} // namespace

ProcessLock::ProcessLock(QString path) : m_path(std::move(path)) {}

ProcessLock::~ProcessLock() {
    const std::lock_guard guard(registry().lock);
    release();
}

ProcessLock::Attempt ProcessLock::tryLock(bool thorough) {
    const std::lock_guard guard(registry().lock);
    if (isOwn())
        return Attempt::held;
    auto lock = std::make_unique<QLockFile>(m_path);
    lock->setStaleLockTime(0);
    const bool succeeds = lock->tryLock(0) || (removeStale(*lock, thorough) && lock->tryLock(0));
    // A lock that was held may only be out of reach for now.
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

// A file that is left behind does no harm, but need not be. A lock whose disk hangs is left.
void ProcessLock::releaseAll() {
    const std::unique_lock guard(registry().lock, std::try_to_lock);
    while (guard && !registry().held.empty())
        registry().held.back()->release();
}

} // namespace KestrioKit
