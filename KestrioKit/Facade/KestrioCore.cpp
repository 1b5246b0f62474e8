#include "KestrioKit/Facade/KestrioCore.h"

#include "KestrioKit/Facade/DebugSurvey.h"
#include "KestrioKit/Facade/FacadeLog.h"
#include "KestrioKit/Facade/SurveyPresentation.h"
#include "KestrioKit/Platform/LibraryThread.h"
#include "KestrioKit/Platform/NetworkTransport.h"
#include "KestrioKit/Platform/Storage.h"
#include "KestrioKit/Platform/TransientThread.h"
#include "KestrioKit/UI/KestrioUI.h"

#include <QCoreApplication>
#include <QThread>
#include <QWidget>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView launchEvent("iOS Launch");
constexpr QLatin1StringView emailAttribute("!email");

using Action = Bootstrap::Action;
using Sequence = Bootstrap::Sequence;

const DisabledError &localError() {
    static const auto *const error = new DisabledError{DisabledError::local, {}};
    return *error;
}

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
    core->m_bootstrap =
        std::make_shared<Bootstrap>(context.executor, [weak](const QString &userId) {
            if (const auto self = weak.lock())
                self->setUserIdentifier(userId);
        });
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
      m_identity(m_api, context.fileExecutor) {}

bool KestrioCore::disableNetworkAccess() const {
    return m_api->disableNetworkAccess();
}

void KestrioCore::setDisableNetworkAccess(bool disable) {
    m_api->setDisableNetworkAccess(disable);
}

Action KestrioCore::readyState() const {
    return m_api->disabledError() ? Action::skip : m_bootstrap->readyState();
}

Action KestrioCore::whenReady(const Block &operation, std::function<void(KestrioCore &)> repeat) {
    const Action action = readyState();
    if (action == Action::doit) {
        operation();
    } else if (action == Action::queue) {
        m_bootstrap->enqueue([weak = weak_from_this(), repeat = std::move(repeat)] {
            if (const auto self = weak.lock())
                repeat(*self);
        });
    }
    return action;
}

// Start-up

void KestrioCore::configure(const QString &environment) {
    const std::lock_guard guard(m_configureLock);
    if (m_bootstrap->isConfigured())
        return;
    // A start that failed is forgotten; what the service has imposed is not.
    if (m_api->disabledError() == localError())
        m_api->setDisabledError(std::nullopt);
    m_api->setEnvironmentId(environment);
    if (ApplicationLifecycle::shared().applicationExists()) {
        startUp();
    } else {
        // The folder is named after the application, which is not there yet.
        DispatchQueue::main().async([self = shared_from_this()] { self->startUp(); });
    }
    m_bootstrap->step(Sequence::configured);
}

void KestrioCore::startUp() {
    Storage::setUp();
    m_identity.loadAuthorizationInfo();
    fetchConfig();
}

void KestrioCore::fetchConfig() {
    m_api->fetchConfig(
        [self = shared_from_this()](const auto &config, const auto &, const auto &error) {
            if (!config || error) {
                self->handleError(error);
                return;
            }
            self->m_config.setValue(config);
            self->m_bootstrap->step(Sequence::getConfig);
            if (config->checkDisabled())
                self->m_bootstrap->step(Sequence::error);
            const std::optional<QString> pending = self->m_bootstrap->userId();
            self->fetchVisitorIdentifier(
                pending ? pending : self->m_identity.localData().userIdentifier, false);
        });
}

// Identity

void KestrioCore::fetchVisitorIdentifier(const std::optional<QString> &userIdentifier,
                                         bool anonymous) {
    const Identity::RequestNumber request = m_identity.beginRequest();
    m_api->fetchVisitorIdentifier(
        userIdentifier, anonymous,
        [self = shared_from_this(), request](const auto &visitor, const auto &, const auto &error) {
            self->visitorReceived(request, visitor, error);
        });
}

void KestrioCore::visitorReceived(Identity::RequestNumber request,
                                  const std::optional<ResponseVisitors> &visitor,
                                  const std::optional<Error> &error) {
    if (!visitor || error) {
        if (m_identity.settle(request))
            failStart();
        handleError(error);
        return;
    }
    const bool hasToken = visitor->token && !visitor->token->isEmpty();
    logLine(u"Received visitor id: %1 - Auth Token? %2"_s.arg(visitor->visitorIdentifier)
                .arg(hasToken ? "YES"_L1 : "NO"_L1),
            LogCategory::info);
    const auto saved = m_identity.saveAuthorizationInfo(request, [&](const LocalData &known) {
        return LocalData{visitor->token ? visitor->token : known.token, visitor->visitorIdentifier,
                         known.userIdentifier};
    });
    if (saved)
        launch(saved->userIdentifier ? Sequence::userId : Sequence::visitorId);
}

void KestrioCore::launch(Sequence sequence) {
    m_bootstrap->step(sequence);
    trackEvent(launchEvent, nullptr);
}

void KestrioCore::failStart() {
    m_bootstrap->step(Sequence::error);
    m_api->setDisabledError(localError());
}

void KestrioCore::setUserIdentifier(const QString &userIdentifier) {
    switch (readyState()) {
    case Action::doit:
        attachUser(userIdentifier);
        return;
    case Action::queue:
        // There may be a visitor by now.
        if (!m_bootstrap->setUserId(userIdentifier))
            setUserIdentifier(userIdentifier);
        return;
    case Action::skip:
        return;
    }
}

void KestrioCore::attachUser(const QString &userIdentifier) {
    const std::optional<QString> known = m_identity.localData().userIdentifier;
    if (known == userIdentifier)
        return;
    const std::optional<qint64> visitorBefore = m_api->visitorIdentifier();
    if (!visitorBefore || known) {
        fetchVisitorIdentifier(userIdentifier, known.has_value());
        return;
    }
    const Identity::RequestNumber request = m_identity.beginRequest();
    m_api->setUserIdentifier(
        userIdentifier, [self = shared_from_this(), request, userIdentifier,
                         visitorBefore](const auto &visitor, const auto &, const auto &error) {
            if (error && self->m_identity.settle(request))
                self->failStart();
            else if (!error && self->userAttached(request, userIdentifier, visitorBefore, visitor))
                self->launch(Sequence::userId);
            else
                // Calls that were made early have waited for this answer.
                self->m_bootstrap->flush();
            self->handleError(error);
        });
}

// Whether there is another visitor now. Without a record in the answer there may be.
bool KestrioCore::userAttached(Identity::RequestNumber request, const QString &userIdentifier,
                               std::optional<qint64> visitorBefore,
                               const std::optional<ResponseVisitors> &visitor) {
    if (!visitor)
        return m_identity.settle(request);
    const auto saved = m_identity.saveAuthorizationInfo(request, [&](const LocalData &) {
        return LocalData{visitor->token, visitor->visitorIdentifier, userIdentifier};
    });
    return saved && saved->visitorIdentifier != visitorBefore;
}

void KestrioCore::logout() {
    whenReady(
        [this] {
            m_identity.clearAuthorizationInfo();
            fetchVisitorIdentifier(std::nullopt, false);
        },
        [](KestrioCore &core) { core.logout(); });
}

// Attributes

void KestrioCore::setLocale(const QString &locale) {
    m_api->setLocale(locale);
}

void KestrioCore::setEmailAddress(const QString &email) {
    setVisitorAttribute(emailAttribute, email);
}

void KestrioCore::setVisitorAttribute(const QString &key, const QString &value) {
    whenReady([&] { m_api->setVisitorAttribute(key, value, handlingErrors()); },
              [key, value](KestrioCore &core) { core.setVisitorAttribute(key, value); });
}

void KestrioCore::setVisitorAttributes(const QMap<QString, QString> &attributes) {
    if (attributes.isEmpty())
        return;
    whenReady([&] { m_api->setVisitorAttributes(attributes, handlingErrors()); },
              [attributes](KestrioCore &core) { core.setVisitorAttributes(attributes); });
}

void KestrioCore::removeVisitorAttributes(const QStringList &keys) {
    if (keys.isEmpty())
        return;
    whenReady([&] { m_api->removeVisitorAttributes(keys, handlingErrors()); },
              [keys](KestrioCore &core) { core.removeVisitorAttributes(keys); });
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
    const Action action = whenReady(
        [&] {
            if (handler)
                trackForSurvey(name, handler);
            else
                m_api->trackEvent(name, true, [](auto &&...) {});
        },
        [eventName, handler](KestrioCore &core) { core.trackEvent(eventName, handler); });
    if (action == Action::skip)
        callOnMain(handler, SurveyState::disabled);
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

void KestrioCore::presentSurvey(const QPointer<QWidget> &from) {
    whenReady(
        [&] {
            if (const std::optional<Survey> held = survey())
                presentSpecifiedSurvey(*held, from);
            else
                logLine(u"No survey found."_s, LogCategory::info);
        },
        [from](KestrioCore &core) { core.presentSurvey(from); });
}

void KestrioCore::presentSurvey(qint64 surveyId, const QPointer<QWidget> &from,
                                const FetchCompletion &fetchCompletion) {
    whenReady(
        [&] {
            m_api->fetchSurvey(
                surveyId, [self = shared_from_this(), from, kept = keptForMain(fetchCompletion)](
                              const auto &survey, const auto &, const auto &) {
                    if (!survey)
                        return;
                    DispatchQueue::main().async([self, from, kept, survey = *survey] {
                        if (kept)
                            (*kept)();
                        self->presentSpecifiedSurvey(survey, from);
                    });
                });
        },
        [surveyId, from](KestrioCore &core) { core.presentSurvey(surveyId, from, {}); });
}

void KestrioCore::presentDebugSurvey(const QPointer<QWidget> &from) {
    if (readyState() != Action::skip)
        presentSpecifiedSurvey(debugSurvey(), from);
}

void KestrioCore::presentSpecifiedSurvey(const Survey &survey, const QPointer<QWidget> &from) {
    const auto present = [self = shared_from_this(), survey, from] {
        const std::optional<ResponseConfig> config = self->config();
        const QColor themeColor = config ? config->themeColor() : KestrioUI::Color::defaultTheme();
        self->handleError(KestrioKit::presentSpecifiedSurvey(
            survey, from, {self->m_clock, self->m_api, themeColor, self}));
    };
    if (isOnMainThread())
        present();
    else
        DispatchQueue::main().async(present);
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
