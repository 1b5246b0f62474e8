#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"

#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <QGuiApplication>
#include <QLocale>
#include <QThread>

#include <cstdlib>
#include <future>

#ifdef Q_OS_UNIX
#include <pthread.h>
#endif

namespace KestrioKit {

/// Registers with Qt when the library is loaded. Qt also reports an application that already
/// exists.
struct ApplicationHooks {
    ApplicationHooks() { qAddPreRoutine(ApplicationLifecycle::applicationCreated); }
};
static const ApplicationHooks applicationHooks;

/// Destroyed with the application's thread. `exit()` keeps the application object, but destroys
/// this guard before the static objects of Qt that the library's thread uses.
struct ExitGuard {
    ~ExitGuard() { ApplicationLifecycle::shared().threadEnding(); }
};

/// Destroyed with any other thread that calls the library. `exit()` destroys the thread-local
/// objects of its thread first. This is the last chance to register an exit handler before Qt's
/// static objects are destroyed, some of which the library's thread may be creating right then.
struct CallerGuard {
    ~CallerGuard() { ApplicationLifecycle::callerEnding(); }
};

ApplicationLifecycle &ApplicationLifecycle::shared() {
    static auto *const lifecycle = new ApplicationLifecycle;
    return *lifecycle;
}

ApplicationLifecycle::ApplicationLifecycle() : m_mainExecutor(Clock::system()) {}

void ApplicationLifecycle::applicationCreated() {
    // Registered for each application, since Qt removes these routines after calling them.
    qAddPostRoutine(applicationGoing);
    endBeforeWhatExists();
    QCoreApplication *const application = QCoreApplication::instance();
    ApplicationLifecycle &lifecycle = shared();
    QObject::connect(application, &QCoreApplication::aboutToQuit, application,
                     [&lifecycle] { lifecycle.terminate(); });
    if (auto *const gui = qobject_cast<QGuiApplication *>(application)) {
        QObject::connect(gui, &QGuiApplication::applicationStateChanged, gui,
                         [&lifecycle](Qt::ApplicationState state) {
                             if (state != Qt::ApplicationActive)
                                 lifecycle.notify(Event::willResignActive);
                         });
    }
    lifecycle.m_mainExecutor.attach(application->thread());
    lifecycle.m_applicationExists = true;
    // The library may be loaded long after the application was created, on a thread that soon ends.
    if (application->thread() == QThread::currentThread())
        lifecycle.followThread();
    else
        lifecycle.m_mainExecutor.post([&lifecycle] { lifecycle.followThread(); });
    lifecycle.notify(Event::created);
}

void ApplicationLifecycle::followThread() {
    m_thread = std::this_thread::get_id();
    thread_local const ExitGuard guard;
}

void ApplicationLifecycle::applicationGoing() {
    ApplicationLifecycle &lifecycle = shared();
    lifecycle.end();
    // In a forked child the lock may be held by a thread that does not exist there.
    if (!lifecycle.m_isForkedChild)
        lifecycle.m_mainExecutor.detach();
}

void ApplicationLifecycle::threadEnding() {
    if (m_applicationExists && m_thread == std::this_thread::get_id())
        end();
}

void ApplicationLifecycle::processExiting() {
    shared().m_processEnds = true;
    if (shared().applicationExists())
        shared().end();
}

void ApplicationLifecycle::callerEnding() {
    // Most threads end without ending the process, and handlers cannot be removed.
    constexpr int mostHandlers = 256;
    static std::atomic<int> handlers = 0;
    if (handlers < mostHandlers && shared().takesCalls()) {
        ++handlers;
        endBeforeWhatExists();
    }
}

bool ApplicationLifecycle::takesCalls() const {
    thread_local const CallerGuard guard;
    return !m_processEnds && !m_isForkedChild;
}

void ApplicationLifecycle::claimProcess() {
#ifdef Q_OS_UNIX
    [[maybe_unused]] static const int registered =
        pthread_atfork(nullptr, nullptr, [] { shared().m_isForkedChild = true; });
#endif
}

void ApplicationLifecycle::endBeforeWhatExists() {
    // Creates the default locale, which calls read until the process ends.
    static_cast<void>(QLocale());
    std::atexit(processExiting);
}

void ApplicationLifecycle::end() {
    if (m_isForkedChild)
        return;
    terminate();
    m_applicationExists = false;
    notify(Event::terminated);
}

ApplicationLifecycle::Observation ApplicationLifecycle::observe(Event event, Block observer) {
    auto observation = std::make_shared<const Block>(std::move(observer));
    const std::lock_guard guard(m_lock);
    auto &observers = m_observers.at(std::size_t(event));
    std::erase_if(observers, [](const auto &known) { return known.expired(); });
    observers.push_back(observation);
    return observation;
}

void ApplicationLifecycle::notify(Event event) {
    if (m_isForkedChild)
        return;
    std::vector<std::weak_ptr<const Block>> observers;
    {
        const std::lock_guard guard(m_lock);
        observers = m_observers.at(std::size_t(event));
    }
    // Reverse order lets a survey on screen hand over its answers before they are saved.
    for (auto known = observers.rbegin(); known != observers.rend(); ++known) {
        if (const Observation observer = known->lock())
            (*observer)();
    }
}

void ApplicationLifecycle::notifyOnApplicationThread(Event event) {
    if (m_thread == std::this_thread::get_id())
        return notify(event);
    const auto done = std::make_shared<std::promise<void>>();
    const auto item = std::make_shared<DispatchWorkItem>([this, event, done] {
        notify(event);
        done->set_value();
    });
    m_mainExecutor.post([item] { item->perform(); });
    done->get_future().wait_for(applicationThreadLimit);
    item->cancel();
}

std::shared_ptr<void> ApplicationLifecycle::beginBackgroundTask() {
    const std::lock_guard guard(m_lock);
    ++m_backgroundTasks;
    return {this, [](ApplicationLifecycle *lifecycle) {
                const std::lock_guard taskGuard(lifecycle->m_lock);
                --lifecycle->m_backgroundTasks;
                lifecycle->m_taskEnded.notify_all();
            }};
}

void ApplicationLifecycle::terminate() {
    if (m_isForkedChild)
        return;
    notifyOnApplicationThread(Event::willTerminate);
    notify(Event::lastSave);
    std::unique_lock lock(m_lock);
    // A task that hung the last time, for example in a file system, is not waited for again.
    const auto limit = m_taskHangs ? std::chrono::seconds(0) : backgroundTaskLimit;
    m_taskHangs = !m_taskEnded.wait_for(lock, limit, [this] { return m_backgroundTasks == 0; });
}

} // namespace KestrioKit
