#pragma once

#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Platform/Threads/EventLoopExecutor.h"

#include <chrono>
#include <memory>
#include <mutex>

class QThread;

namespace KestrioKit {

/// The library's own thread: it runs the blocks of every dispatch queue, and holds the network
/// manager. It starts with the first block once there is an application object (Qt's event loops
/// need one), and ends with the application.
class LibraryThread final : public Executor {
public:
    /// `clock` must outlive this object.
    explicit LibraryThread(const Clock &clock);
    /// Ends the thread as the end of the application does.
    ~LibraryThread() override;

    void post(Block block) override;
    void postAt(DispatchTime deadline, Block block) override;

    /// How long ending waits for the block that is running. Blocks that wait stay unrun.
    static constexpr std::chrono::seconds stopLimit{5};

private:
    void start();
    void stop();

    EventLoopExecutor m_executor;
    std::mutex m_lock;
    std::unique_ptr<QThread> m_thread;
    bool m_stopped = false;
    ApplicationLifecycle::Observation m_applicationCreated;
    ApplicationLifecycle::Observation m_applicationTerminated;
};

} // namespace KestrioKit
