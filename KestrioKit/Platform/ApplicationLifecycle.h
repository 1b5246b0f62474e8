#pragma once

#include "KestrioKit/Platform/EventLoopExecutor.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace KestrioKit {

/// What becomes of the host's application object, from its making to its end. One per process.
class ApplicationLifecycle {
public:
    enum class Event {
        /// The application object has just been made; its event loop does not run yet.
        created,
        /// The application stops being the active one (`QGuiApplication::applicationStateChanged`).
        willResignActive,
        /// The application ends (`QCoreApplication::aboutToQuit`, and once more as the object goes,
        /// for what the host did meanwhile). Background tasks begun by observers are waited for.
        willTerminate,
        /// The application object is going; no event loop runs any more.
        terminated,
    };

    /// Keeps an observer registered for as long as it lives.
    using Observation = std::shared_ptr<const Block>;

    /// Never destroyed, since hosts may call the library while the process ends. Thread-safe.
    static ApplicationLifecycle &shared();

    /// Whether an application object exists. Thread-safe.
    bool applicationExists() const { return m_applicationExists; }

    /// Runs blocks in the application's event loop.
    Executor &mainExecutor() { return m_mainExecutor; }

    /// Has `observer` called on the application's thread at each `event`, before the observers that
    /// were there already. Thread-safe.
    [[nodiscard]] Observation observe(Event event, Block observer);

    /// Something that must not be cut off by the end of the application: while the returned value
    /// lives, ending waits for it, `backgroundTaskLimit` at most. Thread-safe.
    [[nodiscard]] std::shared_ptr<void> beginBackgroundTask();

    static constexpr std::chrono::seconds backgroundTaskLimit{5};

private:
    static constexpr std::size_t eventCount = 4;

    ApplicationLifecycle();

    static void applicationCreated();
    static void applicationGoing();
    static void processExiting();
    void notify(Event event);
    void terminate();
    void end();

    std::atomic<bool> m_applicationExists = false;
    EventLoopExecutor m_mainExecutor;
    std::mutex m_lock;
    std::condition_variable m_taskEnded;
    int m_backgroundTasks = 0;
    bool m_taskHangs = false;
    std::array<std::vector<std::weak_ptr<const Block>>, eventCount> m_observers;

    friend struct ApplicationHooks;
    friend struct ExitGuard;
};

} // namespace KestrioKit
