#include "KestrioKit/Facade/StartUp.h"

#include "KestrioKit/Facade/FacadeLog.h"
#include "KestrioKit/Platform/ApplicationLifecycle.h"
#include "KestrioKit/Platform/Storage.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView launchEvent("iOS Launch");

using Action = Bootstrap::Action;
using Sequence = Bootstrap::Sequence;

const DisabledError &localError() {
    static const auto *const error = new DisabledError{DisabledError::local, {}};
    return *error;
}

void logReceived(const ResponseVisitors &visitor) {
    const bool hasToken = visitor.token && !visitor.token->isEmpty();
    logLine(u"Received visitor id: %1 - Auth Token? %2"_s.arg(visitor.visitorIdentifier)
                .arg(hasToken ? "YES"_L1 : "NO"_L1),
            LogCategory::info);
}

} // namespace

StartUp::StartUp(std::shared_ptr<KestrioService> api, const LibraryContext &context)
    : m_api(std::move(api)),
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
        // A start that failed is forgotten; what the service has imposed is not.
        if (m_api->disabledError() == localError())
            m_api->setDisabledError(std::nullopt);
        m_api->setEnvironmentId(environment);
        m_bootstrap->startOver();
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
    Block send;
    {
        const std::lock_guard guard(m_lock);
        send = configRequest();
    }
    send();
}

Block StartUp::configRequest() {
    return [self = shared_from_this(), request = m_identity.beginRequest()] {
        self->m_api->fetchConfig(
            [self, request](const auto &config, const auto &, const auto &error) {
                self->configReceived(request, config, error);
            });
    };
}

void StartUp::configReceived(RequestNumber request, const std::optional<ResponseConfig> &config,
                             const std::optional<Error> &error) {
    if (!config || error) {
        if (error)
            m_api->handleError(*error);
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
        send = visitorRequest(pending ? pending : m_identity.localData().userIdentifier, false);
    }
    send();
}

// The visitor

Block StartUp::visitorRequest(const std::optional<QString> &userIdentifier, bool anonymous) {
    return [self = shared_from_this(), userIdentifier, anonymous,
            request = m_identity.beginRequest()] {
        self->m_api->fetchVisitorIdentifier(
            userIdentifier, anonymous,
            [self, request](const auto &visitor, const auto &, const auto &error) {
                self->visitorReceived(request, visitor, error);
            });
    };
}

void StartUp::visitorReceived(RequestNumber request, const std::optional<ResponseVisitors> &visitor,
                              const std::optional<Error> &error) {
    if (!visitor || error) {
        fail(request, error);
        return;
    }
    logReceived(*visitor);
    Block send;
    {
        const std::lock_guard guard(m_lock);
        const auto saved = m_identity.saveAuthorizationInfo(request, [&](const LocalData &known) {
            return LocalData{visitor->token, visitor->visitorIdentifier, known.userIdentifier};
        });
        if (!saved)
            return;
        send = arrive(saved->userIdentifier ? Sequence::userId : Sequence::visitorId);
    }
    if (send)
        send();
    trackLaunch();
}

// A user given meanwhile is attached first, and the answer releases the held calls.
Block StartUp::arrive(Sequence sequence) {
    const bool moved = m_bootstrap->step(sequence);
    const std::optional<QString> pending = m_bootstrap->userId();
    if (moved && sequence == Sequence::visitorId && pending)
        return attachRequest(*pending, true);
    if (moved)
        m_bootstrap->flush();
    else
        releaseIfThereIsAVisitor();
    return {};
}

void StartUp::trackLaunch() {
    m_api->trackEvent(launchEvent, true, [](auto &&...) {});
}

// Whatever else is in flight counts for nothing: a late success would leave the library disabled
// although it looks as if it had started.
void StartUp::fail(RequestNumber request, const std::optional<Error> &error) {
    {
        const std::lock_guard guard(m_lock);
        if (m_identity.settle(request)) {
            m_identity.voidRequests();
            m_bootstrap->step(Sequence::error);
            m_api->setDisabledError(localError());
        }
    }
    if (error)
        m_api->handleError(*error);
}

// Users

void StartUp::setUserIdentifier(const QString &userIdentifier) {
    if (readyState() == Action::skip)
        return;
    Block send;
    {
        const std::lock_guard guard(m_lock);
        if (m_bootstrap->setUserId(userIdentifier) || m_bootstrap->action() != Action::doit)
            return;
        send = attachRequest(userIdentifier, false);
    }
    if (send)
        send();
}

Block StartUp::attachRequest(const QString &userIdentifier, bool isPending) {
    if (m_identity.isKnownUser(userIdentifier))
        return {};
    const std::optional<qint64> visitorBefore = m_api->visitorIdentifier();
    const bool isOther = m_identity.localData().userIdentifier.has_value();
    if (!visitorBefore || isOther)
        return visitorRequest(userIdentifier, isOther);
    const Attachment attachment{m_identity.beginRequest(), userIdentifier, visitorBefore};
    if (isPending)
        m_pendingAttach = attachment.request;
    return [self = shared_from_this(), attachment] {
        self->m_api->setUserIdentifier(
            attachment.userIdentifier,
            [self, attachment](const auto &visitor, const auto &, const auto &error) {
                self->attachmentAnswered(attachment, visitor, error);
            });
    };
}

void StartUp::attachmentAnswered(const Attachment &attachment,
                                 const std::optional<ResponseVisitors> &visitor,
                                 const std::optional<Error> &error) {
    if (error)
        fail(attachment.request, error);
    bool launches = false;
    {
        const std::lock_guard guard(m_lock);
        if (m_pendingAttach == attachment.request)
            m_pendingAttach.reset();
        launches = !error && settleAttachment(attachment, visitor);
        if (launches && m_bootstrap->step(Sequence::userId))
            m_bootstrap->flush();
        else
            releaseIfThereIsAVisitor();
    }
    if (launches)
        trackLaunch();
}

// Whether there is another visitor now. Without a record in the answer there may be.
bool StartUp::settleAttachment(const Attachment &attachment,
                               const std::optional<ResponseVisitors> &visitor) {
    if (!visitor)
        return m_identity.settle(attachment.request);
    const auto saved = m_identity.saveAuthorizationInfo(attachment.request, [&](const LocalData &) {
        return LocalData{visitor->token, visitor->visitorIdentifier, attachment.userIdentifier};
    });
    return saved && saved->visitorIdentifier != attachment.visitorBefore;
}

// After a logout the held calls wait for the next visitor.
void StartUp::releaseIfThereIsAVisitor() {
    if (!m_pendingAttach && m_bootstrap->action() == Action::doit && m_api->visitorIdentifier())
        m_bootstrap->flushHeld();
}

void StartUp::logout() {
    Block send;
    {
        const std::lock_guard guard(m_lock);
        m_identity.clearAuthorizationInfo();
        // Its answer counts for nothing, or never comes.
        m_pendingAttach.reset();
        send = visitorRequest(std::nullopt, false);
    }
    send();
}

} // namespace KestrioKit
