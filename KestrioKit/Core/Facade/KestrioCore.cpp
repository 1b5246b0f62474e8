#include "KestrioKit/Core/Facade/KestrioCore.h"

#include "KestrioKit/Core/Facade/DebugSurvey.h"
#include "KestrioKit/Core/Facade/FacadeLog.h"
#include "KestrioKit/Core/Platform/HTTP/NetworkTransport.h"
#include "KestrioKit/Core/Platform/Storage.h"
#include "KestrioKit/Core/Platform/Threads/LibraryThread.h"
#include "KestrioKit/Core/Platform/Threads/TransientThread.h"

#include <QCoreApplication>
#include <QThread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView emailAttribute("!email");

using Action = Bootstrap::Action;
using Kind = HeldCall::Kind;

// What a handler holds may belong to the main thread: it is destroyed there, too.
template <typename Handler>
std::shared_ptr<const Handler> keptForMain(const Handler &handler) {
    if (!handler)
        return nullptr;
    return {new Handler(handler), [](const Handler *kept) {
                DispatchQueue::main().async([kept] { delete kept; });
            }};
}

bool isOnMainThread() {
    const QCoreApplication *const application = QCoreApplication::instance();
    return application && application->thread() == QThread::currentThread();
}

// For the host's developer: the service can do nothing about it.
void logRefusal(const QString &reason) {
    logLine(u"More Info: "_s + reason, LogCategory::error);
}

void callOnMain(const KestrioCore::SharedHandler &handler, SurveyState state) {
    if (handler)
        DispatchQueue::main().async([handler, state] { (*handler)(state); });
}

} // namespace

const std::shared_ptr<KestrioCore> &KestrioCore::shared() {
    // None is ever destroyed: hosts may call while the process ends. What is made last ends first.
    static auto *const fileThread = new TransientThread;
    static auto *const thread = new LibraryThread(Clock::system());
    static auto *const core = new std::shared_ptr(
        make({.clock = Clock::system(),
              .executor = *thread,
              .fileExecutor = *fileThread,
              .transport = std::make_shared<NetworkTransport>(*thread, Clock::system()),
              .makeFlagsSource = [](const QString &host) {
                  return ReachabilityFlagsSource::system(*thread, Clock::system(), host);
              }}));
    return *core;
}

std::shared_ptr<KestrioCore> KestrioCore::make(const LibraryContext &context) {
    std::shared_ptr<KestrioCore> core(new KestrioCore(context));
    const auto weak = core->weak_from_this();
    core->m_api->setErrorHandler([weak](const Error &error) {
        if (const auto self = weak.lock())
            self->reportError(error);
    });
    return core;
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
    if (m_startUp->isRepeated())
        m_startUp->logout();
    else
        whenReady({Kind::logout, [](KestrioCore &core) {
                       core.m_startUp->logout();
                   }});
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
                   core.m_api->setVisitorAttribute(key, value, core.handlingErrors());
               }});
}

void KestrioCore::setVisitorAttributes(const QMap<QString, QString> &attributes) {
    if (attributes.isEmpty())
        return;
    whenReady({Kind::attributes, [attributes](KestrioCore &core) {
                   core.m_api->setVisitorAttributes(attributes, core.handlingErrors());
               }});
}

void KestrioCore::removeVisitorAttributes(const QStringList &keys) {
    if (keys.isEmpty())
        return;
    whenReady({Kind::attributes, [keys](KestrioCore &core) {
                   core.m_api->removeVisitorAttributes(keys, core.handlingErrors());
               }});
}

SimpleCompletion KestrioCore::handlingErrors() {
    return [weak = weak_from_this()](const auto &, const auto &error) {
        if (const auto self = weak.lock())
            self->handleError(error);
    };
}

// Events

void KestrioCore::track(const QString &eventName, const TrackHandler &handler) {
    trackEvent(eventName, keptForMain(handler));
}

void KestrioCore::trackEvent(const QString &eventName, const SharedHandler &handler) {
    const QString name = eventName.trimmed();
    if (name.isEmpty())
        return;
    if (handler) {
        whenReady({Kind::other,
                   [name, handler](KestrioCore &core) { core.trackForSurvey(name, handler); },
                   {},
                   [handler] {
                       callOnMain(handler, SurveyState::disabled);
                   }});
    } else {
        whenReady({Kind::event, [name](KestrioCore &core) {
                       core.m_api->trackEvent(name, true, [](auto &&...) {});
                   }});
    }
}

void KestrioCore::trackForSurvey(const QString &name, const SharedHandler &handler) {
    m_api->trackEvent(
        name, false,
        [self = shared_from_this(), handler](const auto &survey, const auto &, const auto &error) {
            if (survey && !error) {
                callOnMain(handler, self->surveyReceived(*survey));
                return;
            }
            const bool disabled = error && isDisabledError(*error);
            callOnMain(handler, disabled ? SurveyState::disabled : SurveyState::noSurvey);
            self->handleError(error);
        });
}

SurveyState KestrioCore::surveyReceived(const Survey &survey) {
    logLine(u"Received %1 questions"_s.arg(survey.questions.size()), LogCategory::info);
    if (survey.questions.isEmpty() || !survey.preflight())
        return SurveyState::noSurvey;
    speakLanguage(survey);
    // A survey that was not shown yet comes first.
    m_survey.mutate([&survey](std::optional<Survey> &held) {
        if (!held)
            held = survey;
    });
    return SurveyState::surveyReady;
}

// Surveys on screen

void KestrioCore::presentSurvey(const QPointer<QObject> &from) {
    whenReady({Kind::other, [from](KestrioCore &core) {
                   if (const std::optional<Survey> held = core.survey())
                       core.presentSpecifiedSurvey(*held, from);
                   else
                       logLine(u"No survey found."_s, LogCategory::info);
               }});
}

void KestrioCore::presentSurvey(qint64 surveyId, const QPointer<QObject> &from,
                                const FetchCompletion &fetchCompletion) {
    const auto kept = keptForMain(fetchCompletion);
    whenReady({Kind::other,
               [surveyId, from, kept](KestrioCore &core) {
                   core.fetch(surveyId, [&core, from, kept](const Survey &survey) {
                       if (kept)
                           (*kept)();
                       core.presentSpecifiedSurvey(survey, from);
                   });
               },
               [surveyId, from](KestrioCore &core) {
                   core.presentSurvey(surveyId, from, {});
               }});
}

void KestrioCore::fetch(qint64 surveyId, const std::function<void(const Survey &)> &use) {
    m_api->fetchSurvey(
        surveyId, [self = shared_from_this(), use](const auto &survey, const auto &, const auto &) {
            if (survey)
                DispatchQueue::main().async([self, use, survey = *survey] { use(survey); });
        });
}

void KestrioCore::presentDebugSurvey(const QPointer<QObject> &from) {
    if (m_startUp->readyState() != Action::skip)
        presentSpecifiedSurvey(debugSurvey(), from);
}

PresentationContext KestrioCore::presentationContext() {
    return {.clock = m_clock,
            .api = m_api,
            .themeColor = config().value_or(ResponseConfig()).themeColor(),
            .gone = [self = shared_from_this()] {
                self->setSurvey(std::nullopt);
            }};
}

void KestrioCore::presentSpecifiedSurvey(const Survey &survey, const QPointer<QObject> &from) {
    const auto present = [self = shared_from_this(), survey, from] {
        const std::optional<QString> refusal =
            KestrioKit::presentSpecifiedSurvey(survey, from, self->presentationContext());
        if (refusal)
            logRefusal(*refusal);
    };
    if (isOnMainThread())
        present();
    else
        DispatchQueue::main().async(present);
}

// Surveys that the host draws itself

std::unique_ptr<SurveySession> KestrioCore::startSurvey() {
    if (const std::optional<Survey> held = survey())
        return startSession(*held);
    logLine(u"No survey found."_s, LogCategory::info);
    return nullptr;
}

void KestrioCore::startSurvey(qint64 surveyId, const SessionReceiver &receiver) {
    const auto kept = keptForMain(receiver);
    whenReady({Kind::other, [surveyId, kept](KestrioCore &core) {
                   core.fetch(surveyId, [&core, kept](const Survey &survey) {
                       std::unique_ptr<SurveySession> session = core.startSession(survey);
                       if (session && kept)
                           (*kept)(std::move(session));
                   });
               }});
}

std::unique_ptr<SurveySession> KestrioCore::startDebugSurvey() {
    if (m_startUp->readyState() == Action::skip)
        return nullptr;
    return startSession(debugSurvey());
}

std::unique_ptr<SurveySession> KestrioCore::startSession(const Survey &survey) {
    auto started = KestrioKit::startSession(survey, presentationContext());
    if (const auto *const refusal = std::get_if<QString>(&started)) {
        logRefusal(*refusal);
        return nullptr;
    }
    return std::get<std::unique_ptr<SurveySession>>(std::move(started));
}

void KestrioCore::handleError(const std::optional<Error> &error) {
    // The service has handed in that it could not read an answer.
    if (error && error->domain != decodingErrorDomain)
        reportError(*error);
}

void KestrioCore::reportError(const Error &error) {
    logLine(u"More Info: "_s + error.localizedDescription, LogCategory::error);
    m_api->recordError(error, {});
}

} // namespace KestrioKit
