#include "KestrioKit/Core/Facade/StartUp.h"

#include "KestrioKit/Core/Facade/FacadeLog.h"
#include "KestrioKit/Core/Platform/Storage.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

using Action = Bootstrap::Action;
using Sequence = Bootstrap::Sequence;

namespace {

// Logs on the library's thread, so that a slow reader of the log does not block the host's thread.
void logSoon(Executor &executor, const QString &line) {
    executor.post([line] { logLine(line, LogCategory::error); });
}

// The folder is named after the application, which may not exist yet.
void whenThereIsAFolder(const Block &block) {
    if (ApplicationLifecycle::shared().applicationExists())
        block();
    else
        DispatchQueue::main().async(block);
}

} // namespace

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
    if (m_api->disabledError())
        return Action::skip;
    const Action action = m_bootstrap->readyState();
    return action == Action::doit && m_awaitsVisitor ? Action::queue : action;
}

// Configuration

void StartUp::setQueueLimit(int limit) {
    const std::lock_guard guard(m_lock);
    if (!m_bootstrap->isConfigured())
        m_api->setQueueLimit(limit);
}

void StartUp::setServiceHost(const QString &host) {
    if (!m_api->setServiceHost(host))
        logSoon(m_executor,
                u"setServiceHost() is ignored: the service's host is in use already."_s);
}

void StartUp::configure(const QString &environment) {
    Generation generation = 0;
    {
        const std::lock_guard guard(m_lock);
        if (m_bootstrap->isConfigured()) {
            const QString current = m_api->networkRequests().environment();
            if (environment != current)
                logSoon(m_executor, u"configure() is ignored for the environment %1: the library "
                                    "works in %2 already."_s.arg(printedForm(environment),
                                                                 printedForm(current)));
            return;
        }
        if (isRepeated())
            endRepeating();
        // Clears a failed start-up, but not a reason that the service has given.
        if (m_api->disabledError() == DisabledError::locally())
            m_api->setDisabledError(std::nullopt);
        m_api->setEnvironmentId(environment);
        voidRequests();
        m_bootstrap->startOver();
        m_phase = Phase::starting;
        generation = ++m_generation;
    }
    whenThereIsAFolder([self = shared_from_this(), generation] { self->begin(generation); });
}

void StartUp::begin(Generation generation) {
    if (generation != m_generation)
        return;
    Storage::setUp();
    m_identity.loadAuthorizationInfo();
    const auto keepRecords = [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->applicationEnds();
    };
    Block send;
    {
        const std::lock_guard guard(m_lock);
        if (generation != m_generation) {
            // Consent was withdrawn, or start-up begun again, on another thread meanwhile.
            if (!m_bootstrap->isConfigured())
                m_identity.clearAuthorizationInfo();
            return;
        }
        // Registered after the observer that saves the stored visitor's records, and thus called
        // before it.
        m_willTerminateObserver = ApplicationLifecycle::shared().observe(
            ApplicationLifecycle::Event::willTerminate, keepRecords);
        send = configRequest();
    }
    send();
}

Block StartUp::configRequest() {
    return [self = shared_from_this(), request = m_identity.beginRequest()] {
        self->m_api->fetchConfig(
            [self, request](const ConfigAnswer &answer) { self->configReceived(request, answer); });
    };
}

void StartUp::configReceived(RequestNumber request, const ConfigAnswer &answer) {
    if (!answer.value) {
        fail(request, Purpose::configuration, answer);
        return;
    }
    Block send;
    {
        const std::lock_guard guard(m_lock);
        if (!m_identity.settle(request))
            return;
        m_config.setValue(answer.value);
        m_bootstrap->step(Sequence::getConfig);
        if (answer.value->checkDisabled())
            m_bootstrap->step(Sequence::error);
        const std::optional<QString> pending = m_bootstrap->userId();
        send = visitorRequest(pending ? pending : m_identity.localData().userIdentifier,
                              Authorization::visitor, Purpose::visitor);
    }
    send();
}

// Withdrawn consent

void StartUp::withdrawConsent() {
    {
        const std::lock_guard guard(m_lock);
        ++m_generation;
        forgetAll();
    }
    whenThereIsAFolder([self = shared_from_this()] {
        self->m_identity.eraseFile();
        self->m_api->eraseStored();
    });
}

void StartUp::forgetAll() {
    if (isRepeated())
        endRepeating();
    voidRequests();
    m_phase = Phase::idle;
    m_isAnnounced = false;
    m_awaitsVisitor = false;
    m_launchedVisitor.reset();
    m_willTerminateObserver.reset();
    m_config.setValue({});
    m_bootstrap->reset();
    m_api->withdraw();
    m_identity.forget();
}

} // namespace KestrioKit
