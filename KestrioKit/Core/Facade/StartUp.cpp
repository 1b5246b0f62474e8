#include "KestrioKit/Core/Facade/StartUp.h"

#include "KestrioKit/Core/Platform/Storage.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

using Action = Bootstrap::Action;
using Sequence = Bootstrap::Sequence;

std::shared_ptr<StartUp> StartUp::make(std::shared_ptr<KestrioService> api,
                                       const LibraryContext &context) {
    std::shared_ptr<StartUp> startUp(new StartUp(std::move(api), context));
    const auto weak = startUp->weak_from_this();
    startUp->m_schedule =
        std::make_shared<RepeatSchedule>(context, [weak](RepeatSchedule::Occasion occasion) {
            if (const auto self = weak.lock())
                self->repeat(occasion);
        });
    return startUp;
}

StartUp::StartUp(std::shared_ptr<KestrioService> api, const LibraryContext &context)
    : m_executor(context.executor),
      m_api(std::move(api)),
      m_identity(m_api, context.fileExecutor),
      m_bootstrap(std::make_shared<Bootstrap>(context.executor)) {}

Action StartUp::readyState() const {
    return m_api->disabledError() ? Action::skip : m_bootstrap->readyState();
}

// Configuration

void StartUp::setQueueLimit(int limit) {
    const std::lock_guard guard(m_lock);
    if (!m_bootstrap->isConfigured())
        m_api->setQueueLimit(limit);
}

void StartUp::configure(const QString &environment) {
    {
        const std::lock_guard guard(m_lock);
        if (m_bootstrap->isConfigured())
            return;
        if (isRepeated())
            endRepeating();
        // A start that failed is forgotten; what the service has imposed is not.
        if (m_api->disabledError() == DisabledError::locally())
            m_api->setDisabledError(std::nullopt);
        m_api->setEnvironmentId(environment);
        voidRequests();
        m_bootstrap->startOver();
        m_phase = Phase::starting;
    }
    if (ApplicationLifecycle::shared().applicationExists()) {
        begin();
    } else {
        // The folder is named after the application, which is not there yet.
        DispatchQueue::main().async([self = shared_from_this()] { self->begin(); });
    }
}

void StartUp::begin() {
    Storage::setUp();
    m_identity.loadAuthorizationInfo();
    const auto keepRecords = [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->applicationEnds();
    };
    Block send;
    {
        const std::lock_guard guard(m_lock);
        // Behind the observer that saves the stored visitor's records, and thus called before it.
        m_willTerminateObserver = ApplicationLifecycle::shared().observe(
            ApplicationLifecycle::Event::willTerminate, keepRecords);
        send = configRequest();
    }
    send();
}

Block StartUp::configRequest() {
    return [self = shared_from_this(), request = m_identity.beginRequest()] {
        self->m_api->fetchConfig(
            [self, request](const auto &config, const auto &response, const auto &error) {
                self->configReceived(request, config, response, error);
            });
    };
}

void StartUp::configReceived(RequestNumber request, const std::optional<ResponseConfig> &config,
                             const Response &response, const std::optional<Error> &error) {
    if (!config || error) {
        fail(request, Purpose::configuration, response, error);
        return;
    }
    Block send;
    {
        const std::lock_guard guard(m_lock);
        if (!m_identity.settle(request))
            return;
        m_config.setValue(config);
        m_bootstrap->step(Sequence::getConfig);
        if (config->checkDisabled())
            m_bootstrap->step(Sequence::error);
        const std::optional<QString> pending = m_bootstrap->userId();
        send = visitorRequest(pending ? pending : m_identity.localData().userIdentifier, false,
                              Purpose::visitor);
    }
    send();
}

} // namespace KestrioKit
