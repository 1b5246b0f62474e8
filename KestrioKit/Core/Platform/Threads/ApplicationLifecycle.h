#pragma once

#include "KestrioKit/Core/Platform/Threads/EventLoopExecutor.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace KestrioKit {

/// Reports the life of the host's application object and process. There is one application object
/// at a time. Another one may follow it, also on another thread.
class ApplicationLifecycle {
public:
    enum class Event {
        /// The application object was just created, and its event loop does not run yet. If the
        /// library is loaded later than that, this comes when it is loaded.
        created,
        /// The application becomes inactive (`QGuiApplication::applicationStateChanged`).
        willResignActive,
        /// The application ends (`QCoreApplication::aboutToQuit`). Sent again when the application
        /// object is destroyed, for what the host did in between. Skipped if `exit()` is called on
        /// another thread and the application's thread is busy.
        willTerminate,
        /// Follows `willTerminate` immediately. The end of the application waits for the background
        /// tasks that observers begin.
        lastSave,
        /// The application object is being destroyed, or the process ends. The application's event
        /// loop runs no more blocks.
        terminated,
    };

    /// Keeps an observer registered until the last copy is destroyed.
    using Observation = std::shared_ptr<const Block>;

    /// Returns the only instance. It is never destroyed, since hosts may call the library while the
    /// process ends. Thread-safe.
    static ApplicationLifecycle &shared();

    /// Returns whether an application object exists. Thread-safe.
    bool applicationExists() const { return m_applicationExists; }

    /// Returns whether the library handles calls of the host. It does not while the process ends,
    /// since Qt's static objects may already be destroyed. It does not in a forked child either,
    /// where the library's threads are missing. Thread-safe.
    bool takesCalls() const;

    /// Makes this process the one that the library works in. In children forked from now on, the
    /// library does nothing and waits for nothing. Thread-safe.
    static void claimProcess();

    /// Registers an exit handler that runs before any currently existing static object is
    /// destroyed. Exit handlers run in reverse order, and Qt creates some static objects at their
    /// first use, so this is called again after such a use. Thread-safe.
    static void endBeforeWhatExists();

    /// Returns the executor that runs blocks in the application's event loop.
    Executor &mainExecutor() { return m_mainExecutor; }

    /// Calls `observer` at each `event` until the returned value is destroyed. Observers are called
    /// in reverse order of registration, on the application's thread. If `exit()` on another thread
    /// ends the application, `lastSave` and `terminated` come on that thread. Thread-safe.
    [[nodiscard]] Observation observe(Event event, Block observer);

    /// Begins a task that the end of the application must not interrupt. The end waits until the
    /// returned value is destroyed, for at most `backgroundTaskLimit`. Thread-safe.
    [[nodiscard]] std::shared_ptr<void> beginBackgroundTask();

    /// The maximum time for which the end of the application waits for background tasks.
    static constexpr std::chrono::seconds backgroundTaskLimit{5};
    /// The maximum time for which `exit()` on another thread waits for the application's thread.
    static constexpr std::chrono::seconds applicationThreadLimit{1};

private:
    static constexpr std::size_t eventCount = 5;

    ApplicationLifecycle();

    /// Called by Qt for each new application object, and for an existing one when the library is
    /// loaded.
    static void applicationCreated();
    /// Called by Qt while it destroys the application object.
    static void applicationGoing();
    /// An exit handler. It may run several times.
    static void processExiting();
    /// Called when a thread ends that has called the library.
    static void callerEnding();
    /// Watches the end of the calling thread, which is the application's.
    void followThread();
    /// Called when a thread ends that ran an application. Ends the application if it still exists
    /// there.
    void threadEnding();
    /// Calls the observers of `event` on the current thread, the last one first.
    void notify(Event event);
    /// Does the same on the application's thread, and waits at most `applicationThreadLimit`.
    void notifyOnApplicationThread(Event event);
    /// Reports `willTerminate` and `lastSave`, and waits for background tasks.
    void terminate();
    /// Terminates, and reports `terminated`.
    void end();

    std::atomic<bool> m_applicationExists = false;
    std::atomic<bool> m_processEnds = false;
    std::atomic<bool> m_isForkedChild = false;
    /// The id of the application's thread.
    std::atomic<std::thread::id> m_thread;
    EventLoopExecutor m_mainExecutor;
    std::mutex m_lock;
    std::condition_variable m_taskEnded;
    int m_backgroundTasks = 0;
    /// Whether waiting for background tasks timed out the last time.
    bool m_taskHangs = false;
    std::array<std::vector<std::weak_ptr<const Block>>, eventCount> m_observers;

    friend struct ApplicationHooks;
    friend struct ExitGuard;
    friend struct CallerGuard;
};

} // namespace KestrioKit
