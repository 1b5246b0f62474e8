#include "KestrioKit/Platform/ApplicationLifecycle.h"

#include <QGuiApplication>

#include <cstdlib>

namespace KestrioKit {

/// Registers with Qt when the library is loaded: an application made before or after is seen.
struct ApplicationHooks {
    ApplicationHooks() { qAddPreRoutine(ApplicationLifecycle::applicationCreated); }
};
static const ApplicationHooks applicationHooks;

/// Goes with the application's thread. A process that leaves by `exit()` keeps its application
/// object, but destroys this before any of Qt's statics that the library's thread works with.
struct ExitGuard {
    ~ExitGuard() { ApplicationLifecycle::processExiting(); }
};

ApplicationLifecycle &ApplicationLifecycle::shared() {
    static auto *const lifecycle = new ApplicationLifecycle;
    return *lifecycle;
}

ApplicationLifecycle::ApplicationLifecycle() : m_mainExecutor(Clock::system()) {}

void ApplicationLifecycle::applicationCreated() {
    // Each time: Qt forgets these routines once it has called them.
    qAddPostRoutine(applicationGoing);
    thread_local const ExitGuard guard;
    // For an exit from another thread. Not registered before, since exit handlers run backwards:
    // what Qt's file paths are made of must still be there.
    [[maybe_unused]] static const int registered = std::atexit(processExiting);
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
    lifecycle.notify(Event::created);
}

void ApplicationLifecycle::applicationGoing() {
    shared().end();
    shared().m_mainExecutor.detach();
}

void ApplicationLifecycle::processExiting() {
    if (shared().applicationExists())
        shared().end();
}

void ApplicationLifecycle::end() {
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
    notify(Event::willTerminate);
    std::unique_lock lock(m_lock);
    // What hung the last time, in a file system say, is not waited for again.
    const auto limit = m_taskHangs ? std::chrono::seconds(0) : backgroundTaskLimit;
    m_taskHangs = !m_taskEnded.wait_for(lock, limit, [this] { return m_backgroundTasks == 0; });
}

} // namespace KestrioKit
