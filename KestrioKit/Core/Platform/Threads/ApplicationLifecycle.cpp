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

/// Registers with Qt when the library is loaded: an application made before or after is seen.
struct ApplicationHooks {
    ApplicationHooks() { qAddPreRoutine(ApplicationLifecycle::applicationCreated); }
};
static const ApplicationHooks applicationHooks;

/// Goes with the application's thread. A process that leaves by `exit()` keeps its application
/// object, but destroys this before any of Qt's statics that the library's thread works with.
struct ExitGuard {
    ~ExitGuard() { ApplicationLifecycle::shared().threadEnding(); }
};

/// Goes with any other thread. `exit()` destroys what belongs to its thread before anything else:
/// the last chance to have the process's end handled before Qt's statics go, some of which the
/// library's thread may be making just then.
struct CallerGuard {
    ~CallerGuard() { ApplicationLifecycle::callerEnding(); }
};

ApplicationLifecycle &ApplicationLifecycle::shared() {
    static auto *const lifecycle = new ApplicationLifecycle;
    return *lifecycle;
}

ApplicationLifecycle::ApplicationLifecycle() : m_mainExecutor(Clock::system()) {}

void ApplicationLifecycle::applicationCreated() {
    // Each time: Qt forgets these routines once it has called them.
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
    // The library may be loaded long after the application was made, on a thread that soon ends.
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
    // In a forked child the lock may be held by a thread that is not there.
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
    // Threads that end without an end of the process come and go, and nothing takes a handler back.
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
    // Calls read it until the end.
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
    // What began last ends first: a survey on screen hands over its answers before they are saved.
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
    // What hung the last time, in a file system say, is not waited for again.
    const auto limit = m_taskHangs ? std::chrono::seconds(0) : backgroundTaskLimit;
    m_taskHangs = !m_taskEnded.wait_for(lock, limit, [this] { return m_backgroundTasks == 0; });
}

} // namespace KestrioKit
