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

constexpr QLatin1StringView emailAttribute("!email");

using Action = Bootstrap::Action;

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
      m_startUp(std::make_shared<StartUp>(m_api, context)) {}

bool KestrioCore::disableNetworkAccess() const {
    return m_api->disableNetworkAccess();
}

void KestrioCore::setDisableNetworkAccess(bool disable) {
    m_api->setDisableNetworkAccess(disable);
}

void KestrioCore::setQueueLimit(int limit) {
    m_startUp->setQueueLimit(limit);
}

Action KestrioCore::whenReady(const Block &operation, std::function<void(KestrioCore &)> repeat) {
    const Action action = m_startUp->readyState();
    if (action == Action::doit) {
        operation();
    } else if (action == Action::queue) {
        m_startUp->hold({[weak = weak_from_this(), repeat = std::move(repeat)] {
            if (const auto self = weak.lock())
                repeat(*self);
        }});
    }
    return action;
}

// Start-up and identity

void KestrioCore::configure(const QString &environment) {
    m_startUp->configure(environment);
}

void KestrioCore::setUserIdentifier(const QString &userIdentifier) {
    m_startUp->setUserIdentifier(userIdentifier);
}

void KestrioCore::logout() {
    whenReady([this] { m_startUp->logout(); }, [](KestrioCore &core) { core.logout(); });
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
    if (m_startUp->readyState() != Action::skip)
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
