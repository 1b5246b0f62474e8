#include "KestrioKit/Facade/KestrioCore.h"

#include "KestrioKit/Facade/FacadeLog.h"
#include "KestrioKit/Platform/LanguageBundle.h"
#include "KestrioKit/Platform/LibraryThread.h"
#include "KestrioKit/Platform/NetworkTransport.h"
#include "KestrioKit/Platform/Storage.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView identityFilename("VisitorData");
// It is read on the host's thread; the identity of even a very long user is far smaller.
constexpr qint64 maximumIdentityFileSize = 4 * 1024 * 1024;
constexpr QLatin1StringView launchEvent("iOS Launch");
constexpr QLatin1StringView emailAttribute("!email");
constexpr QLatin1StringView defaultLocale("en");

using Action = Bootstrap::Action;
using Sequence = Bootstrap::Sequence;

const DisabledError &localError() {
    static const auto *const error = new DisabledError{DisabledError::local, {}};
    return *error;
}

void callOnMain(const KestrioCore::TrackHandler &handler, SurveyState state) {
    if (handler)
        DispatchQueue::main().async([handler, state] { handler(state); });
}

} // namespace

const std::shared_ptr<KestrioCore> &KestrioCore::shared() {
    // Neither is ever destroyed: hosts may call while the process ends.
    static auto *const thread = new LibraryThread(Clock::system());
    static auto *const core =
        new std::shared_ptr(make({.clock = Clock::system(),
                                  .executor = *thread,
                                  .transport = std::make_shared<NetworkTransport>(*thread),
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
            self->handleError(error);
    });
    return core;
}

KestrioCore::KestrioCore(const LibraryContext &context)
    : m_api(std::make_shared<KestrioService>(
          std::make_shared<KestrioServiceRequests>(context.clock), context)) {}

void KestrioCore::setDisableNetworkAccess(bool disable) {
    m_disableNetworkAccess = disable;
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
    loadAuthorizationInfo();
    fetchConfig();
}

void KestrioCore::loadAuthorizationInfo() {
    const auto log = [](qint64 visitorIdentifier, const QString &token, QStringView source) {
        logLine(u"Loaded vid (%1) and auth token (%2 bytes) from %3."_s.arg(visitorIdentifier)
                    .arg(token.size())
                    .arg(source),
                LogCategory::debug);
    };
    if (qEnvironmentVariableIsSet("KESTRIO_AUTH_TOKEN") &&
        qEnvironmentVariableIsSet("KESTRIO_VISITOR_IDENTIFIER")) {
        const QString token = qEnvironmentVariable("KESTRIO_AUTH_TOKEN");
        bool isNumber = false;
        const qint64 visitorIdentifier =
            qEnvironmentVariable("KESTRIO_VISITOR_IDENTIFIER").toLongLong(&isNumber);
        if (!isNumber)
            return;
        m_api->authorize(token, visitorIdentifier);
        log(visitorIdentifier, token, u"environment");
        return;
    }
    const auto record = Storage::load<LocalData>(Storage::localLibraryURL(identityFilename),
                                                 maximumIdentityFileSize);
    if (!record)
        return;
    m_localData.setValue(*record);
    if (!record->visitorIdentifier)
        return;
    m_api->authorize(record->token, record->visitorIdentifier);
    log(*record->visitorIdentifier, record->token.value_or(QString()), u"file");
}

void KestrioCore::saveAuthorizationInfo(const std::optional<QString> &token,
                                        std::optional<qint64> visitorIdentifier,
                                        const std::optional<QString> &userIdentifier) {
    m_api->authorize(token, visitorIdentifier);
    const LocalData record{token, visitorIdentifier, userIdentifier};
    Storage::store(std::optional(record), Storage::localLibraryURL(identityFilename));
    m_localData.setValue(record);
}

void KestrioCore::clearAuthorizationInfo() {
    Storage::remove(identityFilename);
    m_localData.setValue({});
}

void KestrioCore::fetchConfig() {
    m_api->fetchConfig([self = shared_from_this()](const auto &config, const auto &,
                                                   const auto &error) {
        if (!config || error) {
            self->handleError(error);
            return;
        }
        self->m_config.setValue(config);
        self->m_bootstrap->step(Sequence::getConfig);
        if (config->checkDisabled())
            self->m_bootstrap->step(Sequence::error);
        const std::optional<QString> pending = self->m_bootstrap->userId();
        self->fetchVisitorIdentifier(pending ? pending : self->m_localData.value().userIdentifier,
                                     false);
    });
}

// Identity

void KestrioCore::fetchVisitorIdentifier(const std::optional<QString> &userIdentifier,
                                         bool anonymous) {
    m_api->fetchVisitorIdentifier(
        userIdentifier, anonymous,
        [self = shared_from_this()](const auto &visitor, const auto &, const auto &error) {
            self->visitorReceived(visitor, error);
        });
}

void KestrioCore::visitorReceived(const std::optional<ResponseVisitors> &visitor,
                                  const std::optional<Error> &error) {
    if (!visitor || error) {
        failStart(error);
        return;
    }
    const bool hasToken = visitor->token && !visitor->token->isEmpty();
    logLine(u"Received visitor id: %1 - Auth Token? %2"_s.arg(visitor->visitorIdentifier)
                .arg(hasToken ? "YES"_L1 : "NO"_L1),
            LogCategory::info);
    const LocalData known = m_localData.value();
    saveAuthorizationInfo(visitor->token ? visitor->token : known.token, visitor->visitorIdentifier,
                          known.userIdentifier);
    launch(known.userIdentifier ? Sequence::userId : Sequence::visitorId);
}

void KestrioCore::launch(Sequence sequence) {
    m_bootstrap->step(sequence);
    track(launchEvent, {});
}

void KestrioCore::failStart(const std::optional<Error> &error) {
    m_bootstrap->step(Sequence::error);
    m_api->setDisabledError(localError());
    handleError(error);
}

void KestrioCore::setUserIdentifier(const QString &userIdentifier) {
    switch (readyState()) {
    case Action::doit:
        attachUser(userIdentifier);
        return;
    case Action::queue:
        m_bootstrap->setUserId(userIdentifier);
        return;
    case Action::skip:
        return;
    }
}

void KestrioCore::attachUser(const QString &userIdentifier) {
    const std::optional<QString> known = m_localData.value().userIdentifier;
    if (known == userIdentifier)
        return;
    const std::optional<qint64> visitorBefore = m_api->visitorIdentifier();
    if (!visitorBefore || known) {
        fetchVisitorIdentifier(userIdentifier, known.has_value());
        return;
    }
    m_api->setUserIdentifier(userIdentifier,
                             [self = shared_from_this(), userIdentifier,
                              visitorBefore](const auto &visitor, const auto &, const auto &error) {
                                 self->userAttached(userIdentifier, visitorBefore, visitor, error);
                             });
}

void KestrioCore::userAttached(const QString &userIdentifier, std::optional<qint64> visitorBefore,
                               const std::optional<ResponseVisitors> &visitor,
                               const std::optional<Error> &error) {
    if (error) {
        failStart(error);
        return;
    }
    if (visitor) {
        saveAuthorizationInfo(visitor->token, visitor->visitorIdentifier, userIdentifier);
        if (visitor->visitorIdentifier == visitorBefore)
            return;
    } else if (!visitorBefore) {
        return;
    }
    launch(Sequence::userId);
}

void KestrioCore::logout() {
    whenReady(
        [this] {
            m_api->clearAuthorization();
            clearAuthorizationInfo();
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
        [eventName, handler](KestrioCore &core) { core.track(eventName, handler); });
    if (action == Action::skip)
        callOnMain(handler, SurveyState::disabled);
}

void KestrioCore::trackForSurvey(const QString &name, const TrackHandler &handler) {
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
    AnyLanguageBundle::framework().setLanguage(survey.locale.value_or(defaultLocale));
    // A survey that was not shown yet comes first.
    m_survey.mutate([&survey](std::optional<Survey> &held) {
        if (!held)
            held = survey;
    });
    return SurveyState::surveyReady;
}

void KestrioCore::handleError(const std::optional<Error> &error) {
    if (!error)
        return;
    logLine(u"More Info: "_s + error->localizedDescription, LogCategory::error);
    m_api->recordError(*error, {});
}

} // namespace KestrioKit
