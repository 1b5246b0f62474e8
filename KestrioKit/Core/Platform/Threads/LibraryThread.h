#pragma once

#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Platform/Threads/EventLoopExecutor.h"

#include <chrono>
#include <memory>
#include <mutex>

class QThread;

namespace KestrioKit {

/// The library's own thread. It runs the blocks of all dispatch queues and owns the network
/// manager. It starts when an application object is created, which Qt's event loops need, or with
/// the first block if there is one already. It ends with the application. Thread-safe.
class LibraryThread final : public Executor {
public:
    /// `clock` decides when timed blocks are due. It must outlive this object.
    explicit LibraryThread(const Clock &clock);
    /// Ends the thread in the same way as the end of the application does.
    ~LibraryThread() override;

    void post(Block block) override;
    void postAt(DispatchTime deadline, Block block) override;

    /// How long ending waits for the running block. Waiting blocks are not run.
    static constexpr std::chrono::seconds stopLimit{5};

private:
    /// Starts the thread if there is an application object and the thread is not running.
    void start();
    /// Ends the thread and waits for at most `stopLimit`.
    void stop();

    EventLoopExecutor m_executor;
    std::mutex m_lock;
    std::unique_ptr<QThread> m_thread;
    bool m_stopped = false;
    ApplicationLifecycle::Observation m_applicationCreated;
    ApplicationLifecycle::Observation m_applicationTerminated;
};

} // namespace KestrioKit
