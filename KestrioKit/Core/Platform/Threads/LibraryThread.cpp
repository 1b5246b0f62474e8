#include "KestrioKit/Core/Platform/Threads/LibraryThread.h"

#include <QDeadlineTimer>
#include <QThread>

namespace KestrioKit {

LibraryThread::LibraryThread(const Clock &clock) : m_executor(clock) {
    using Event = ApplicationLifecycle::Event;
    ApplicationLifecycle &lifecycle = ApplicationLifecycle::shared();
    m_applicationCreated = lifecycle.observe(Event::created, [this] {
        {
            const std::lock_guard guard(m_lock);
            m_stopped = false;
        }
        start();
    });
    m_applicationTerminated = lifecycle.observe(Event::terminated, [this] { stop(); });
}

LibraryThread::~LibraryThread() {
    stop();
}

void LibraryThread::post(Block block) {
    m_executor.post(std::move(block));
    start();
}

void LibraryThread::postAt(DispatchTime deadline, Block block) {
    m_executor.postAt(deadline, std::move(block));
    start();
}

void LibraryThread::start() {
    const std::lock_guard guard(m_lock);
    if (m_thread || m_stopped || !ApplicationLifecycle::shared().applicationExists())
        return;
    m_thread = std::make_unique<QThread>();
    m_thread->setObjectName(QStringLiteral("KestrioKit"));
    m_executor.attach(m_thread.get());
    m_thread->start();
}

void LibraryThread::stop() {
    std::unique_ptr<QThread> thread;
    {
        const std::lock_guard guard(m_lock);
        m_stopped = true;
        thread = std::move(m_thread);
    }
    if (!thread)
        return;
    thread->quit();
    if (thread->wait(QDeadlineTimer(stopLimit)))
        m_executor.detach();
    else
        // A block hangs, for example in a file system. The thread keeps running until the process
        // ends.
        static_cast<void>(thread.release());
}

} // namespace KestrioKit
