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

/// What becomes of the host's application object and of its process. There is one application
/// object at a time; another one may follow it, on another thread too.
class ApplicationLifecycle {
public:
    enum class Event {
        /// The application object has just been made; its event loop does not run yet.
        created,
        /// The application stops being the active one (`QGuiApplication::applicationStateChanged`).
        willResignActive,
        /// The application ends (`QCoreApplication::aboutToQuit`, and once more as the object goes,
        /// for what the host did meanwhile). When `exit()` is called on another thread and the
        /// application's thread is busy, this is left out.
        willTerminate,
        /// Comes right after it. Background tasks begun by observers are waited for.
        lastSave,
        /// The application object is going, or the process ends; nothing runs in an event loop of
        /// the application any more.
        terminated,
    };

    /// Keeps an observer registered for as long as it lives.
    using Observation = std::shared_ptr<const Block>;

    /// Never destroyed, since hosts may call the library while the process ends. Thread-safe.
    static ApplicationLifecycle &shared();

    /// Whether an application object exists. Thread-safe.
    bool applicationExists() const { return m_applicationExists; }

    /// Whether the host's calls count. They do not while the process ends, when what they need of
    /// Qt's may be gone, and in a forked child, which has none of the library's threads.
    /// Thread-safe.
    bool takesCalls() const;

    /// Makes this the process that the library works in: in a child that is forked from now on it
    /// does nothing, and waits for nothing. Thread-safe.
    static void claimProcess();

    /// Has the end of the process handled before anything is destroyed that exists by now: handlers
    /// run backwards, and Qt makes some of its statics at their first use. Thread-safe.
    static void endBeforeWhatExists();

    /// Runs blocks in the application's event loop.
    Executor &mainExecutor() { return m_mainExecutor; }

    /// Has `observer` called at each `event`, before the observers that were there already: on the
    /// application's thread, but for `lastSave` and `terminated`, which come on the thread that
    /// calls `exit()` when that ends the application. Thread-safe.
    [[nodiscard]] Observation observe(Event event, Block observer);

    /// Something that must not be cut off by the end of the application: while the returned value
    /// lives, ending waits for it, `backgroundTaskLimit` at most. Thread-safe.
    [[nodiscard]] std::shared_ptr<void> beginBackgroundTask();

    static constexpr std::chrono::seconds backgroundTaskLimit{5};
    /// How long `exit()` on another thread waits for the application's thread.
    static constexpr std::chrono::seconds applicationThreadLimit{1};

private:
    static constexpr std::size_t eventCount = 5;

    ApplicationLifecycle();

    static void applicationCreated();
    static void applicationGoing();
    static void processExiting();
    static void callerEnding();
    void followThread();
    void threadEnding();
    void notify(Event event);
    void notifyOnApplicationThread(Event event);
    void terminate();
    void end();

    std::atomic<bool> m_applicationExists = false;
    std::atomic<bool> m_processEnds = false;
    std::atomic<bool> m_isForkedChild = false;
    /// The application's thread.
    std::atomic<std::thread::id> m_thread;
    EventLoopExecutor m_mainExecutor;
    std::mutex m_lock;
    std::condition_variable m_taskEnded;
    int m_backgroundTasks = 0;
    bool m_taskHangs = false;
    std::array<std::vector<std::weak_ptr<const Block>>, eventCount> m_observers;

    friend struct ApplicationHooks;
    friend struct ExitGuard;
    friend struct CallerGuard;
};

} // namespace KestrioKit
