#include "KestrioKit/Core/Facade/KestrioCore.h"

#include "KestrioKit/Core/Facade/FacadeLog.h"
#include "KestrioKit/Core/Platform/Threads/MainThread.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView emailAttribute("!email");

using Action = Bootstrap::Action;
using Kind = HeldCall::Kind;

} // namespace

std::shared_ptr<KestrioCore> KestrioCore::make(const LibraryContext &context) {
    std::shared_ptr<KestrioCore> core(new KestrioCore(context));
    core->connectParts();
    return core;
}

void KestrioCore::connectParts() {
    const auto weak = weak_from_this();
    m_api->setErrorHandler([weak](const Error &error) {
        if (const auto self = weak.lock())
            self->reportError(error);
    });
    const auto announce = [weak](const Announcement &announcement) {
        DispatchQueue::main().async([weak, announcement] {
            if (const auto self = weak.lock())
                self->announce(announcement);
        });
    };
    m_api->setObserver(
        {.visitorChanged = [announce] { announce(&FacadeObserver::visitorIdentifierChanged); },
         .disabledChanged =
             [announce](const auto &error) {
                 announce([error](FacadeObserver &observer) {
                     error ? observer.disabled(*error) : observer.enabled();
                 });
             }});
    m_tracking = std::make_shared<EventTracking>(
        m_api,
        EventTracking::Observer{
            .surveyHeldChanged = [announce] { announce(&FacadeObserver::surveyHeldChanged); },
            .requestEnded = handlingErrors()});
}

void KestrioCore::announce(const Announcement &announcement) const {
    if (FacadeObserver *const observer = m_observer)
        announcement(*observer);
}

KestrioCore::KestrioCore(const LibraryContext &context)
    : m_clock(context.clock),
      m_api(std::make_shared<KestrioService>(
          std::make_shared<KestrioServiceRequests>(context.clock), context)),
      m_startUp(StartUp::make(m_api, context)) {}

bool KestrioCore::disableNetworkAccess() const {
    return m_api->disableNetworkAccess();
}

void KestrioCore::setDisableNetworkAccess(bool disable) {
    m_api->setDisableNetworkAccess(disable);
    if (!disable)
        m_startUp->networkAllowed();
}

void KestrioCore::setQueueLimit(int limit) {
    m_startUp->setQueueLimit(limit);
}

void KestrioCore::setServiceHost(const QString &host) {
    m_startUp->setServiceHost(host);
}

void KestrioCore::whenReady(const Call &call) {
    Action action = m_startUp->readyState();
    const bool hasRecord = call.kind == Kind::event || call.kind == Kind::attributes;
    if (action == Action::queue)
        m_startUp->hold(held(call));
    else if (action == Action::skip && hasRecord && m_startUp->isRepeated())
        action = m_startUp->keep(held(call));
    if (action == Action::doit)
        call.operation(*this);
    else if (action == Action::skip && call.dropped)
        call.dropped();
}

HeldCall KestrioCore::held(const Call &call) {
    const auto onCore = [weak = weak_from_this()](Call::Operation operation) -> Block {
        return [weak, operation = std::move(operation)] {
            if (const auto self = weak.lock())
                operation(*self);
        };
    };
    const auto again = [call](KestrioCore &core) {
        core.whenReady(call);
    };
    return {call.kind, onCore(call.later ? call.later : again), onCore(call.operation),
            call.dropped};
}

// Start-up and identity

void KestrioCore::configure(const QString &environment) {
    m_startUp->configure(environment);
}

void KestrioCore::setUserIdentifier(const QString &userIdentifier) {
    m_startUp->setUserIdentifier(userIdentifier);
}

void KestrioCore::logout() {
    if (m_startUp->isRepeated() || m_startUp->awaitsVisitor())
        m_startUp->logout();
    else
        whenReady({Kind::logout, [](KestrioCore &core) {
                       core.m_startUp->logout();
                   }});
}

void KestrioCore::withdrawConsent() {
    m_startUp->withdrawConsent();
    setSurvey(std::nullopt);
    onMain(&SurveySessionPrivate::discardExisting);
}

// Attributes

void KestrioCore::setLocale(const QString &locale) {
    m_api->setLocale(locale);
}

void KestrioCore::setEmailAddress(const QString &email) {
    setVisitorAttribute(emailAttribute, email);
}

void KestrioCore::setVisitorAttribute(const QString &key, const QString &value) {
    whenReady({Kind::attributes, [key, value](KestrioCore &core) {
                   core.m_api->setVisitorAttribute(key, value, core.completion());
               }});
}

void KestrioCore::setVisitorAttributes(const QMap<QString, QString> &attributes) {
    if (attributes.isEmpty())
        return;
    whenReady({Kind::attributes, [attributes](KestrioCore &core) {
                   core.m_api->setVisitorAttributes(attributes, core.completion());
               }});
}

void KestrioCore::removeVisitorAttributes(const QStringList &keys) {
    if (keys.isEmpty())
        return;
    whenReady({Kind::attributes, [keys](KestrioCore &core) {
                   core.m_api->removeVisitorAttributes(keys, core.completion());
               }});
}

std::function<void(const std::optional<Error> &)> KestrioCore::handlingErrors() {
    return [weak = weak_from_this()](const auto &error) {
        if (const auto self = weak.lock())
            self->handleError(error);
    };
}

SimpleCompletion KestrioCore::completion() {
    return [handle = handlingErrors()](const SimpleAnswer &answer) {
        handle(answer.error);
    };
}

// Events

void KestrioCore::track(const QString &eventName, const TrackHandler &given) {
    const SharedHandler handler = keptForMain(given);
    const QString name = eventName.trimmed();
    if (name.isEmpty())
        return;
    if (handler) {
        whenReady(
            {Kind::other,
             [name, handler](KestrioCore &core) { core.m_tracking->trackForSurvey(name, handler); },
             {},
             [handler] {
                 callOnMain(handler, SurveyState::disabled);
             }});
    } else {
        whenReady({Kind::event, [name](KestrioCore &core) {
                       core.m_tracking->track(name);
                   }});
    }
}

// Errors

void KestrioCore::handleError(const std::optional<Error> &error) {
    // The service has already reported responses that it could not read.
    if (error && error->domain != decodingErrorDomain)
        reportError(*error);
}

void KestrioCore::reportError(const Error &error) {
    // Withdrawn consent has cancelled the requests in flight.
    if (m_api->isWithdrawn())
        return;
    logLine(u"More Info: "_s + error.localizedDescription, LogCategory::error);
    m_api->recordError(error, {});
}

} // namespace KestrioKit
