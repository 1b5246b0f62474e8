#include "KestrioKit/Platform/ApplicationLifecycle.h"

#include <QGuiApplication>

namespace KestrioKit {

/// Registers with Qt when the library is loaded: an application made before or after is seen. A
/// process that leaves by `exit()` keeps its application object; then this is the end.
struct ApplicationHooks {
    ApplicationHooks() {
        qAddPreRoutine(ApplicationLifecycle::applicationCreated);
        qAddPostRoutine(ApplicationLifecycle::applicationGoing);
    }
    ~ApplicationHooks() {
        if (ApplicationLifecycle::shared().applicationExists())
            ApplicationLifecycle::applicationGoing();
    }
    Q_DISABLE_COPY_MOVE(ApplicationHooks)
};
static const ApplicationHooks applicationHooks;

ApplicationLifecycle &ApplicationLifecycle::shared() {
    static auto *const lifecycle = new ApplicationLifecycle;
    return *lifecycle;
}

ApplicationLifecycle::ApplicationLifecycle() : m_mainExecutor(Clock::system()) {}

void ApplicationLifecycle::applicationCreated() {
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
    ApplicationLifecycle &lifecycle = shared();
    lifecycle.terminate();
    lifecycle.m_applicationExists = false;
    lifecycle.notify(Event::terminated);
    lifecycle.m_mainExecutor.detach();
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
    for (const std::weak_ptr<const Block> &known : observers) {
        if (const Observation observer = known.lock())
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
    m_taskEnded.wait_for(lock, backgroundTaskLimit, [this] { return m_backgroundTasks == 0; });
}

} // namespace KestrioKit
