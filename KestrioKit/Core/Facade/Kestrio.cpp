#include "KestrioKit/Kestrio.h"

#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Core/Facade/Selectors.h"
#include "KestrioKit/Core/Platform/Logging.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Platform/Threads/MainThread.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>

#include <array>

using KestrioKit::ApplicationLifecycle;
using KestrioKit::DisabledError;
using KestrioKit::KestrioCore;
using KestrioKit::LogLevel;

namespace {

/// Returns whether the process still takes calls. Every operation checks this first.
bool counts() {
    return ApplicationLifecycle::shared().takesCalls();
}

/// Returns a handler that calls `handler` only while `context` exists; empty if `handler` is empty.
template <typename... Arguments>
std::function<void(Arguments...)> guarded(const QObject *context,
                                          const std::function<void(Arguments...)> &handler) {
    if (!handler)
        return {};
    return [context = QPointer(context), handler](Arguments... arguments) {
        if (context)
            handler(arguments...);
    };
}

Kestrio::DisabledReason reason(const DisabledError &error) {
    switch (error.kind) {
    case DisabledError::version:
        return Kestrio::DisabledReason::Version;
    case DisabledError::environment:
        return Kestrio::DisabledReason::Environment;
    case DisabledError::local:
        return Kestrio::DisabledReason::StartUpFailed;
    case DisabledError::other:
        return Kestrio::DisabledReason::Service;
    }
    Q_UNREACHABLE();
}

QtMsgType messageType(LogLevel level) {
    if (level == LogLevel::info)
        return QtInfoMsg;
    return level == LogLevel::error ? QtWarningMsg : QtDebugMsg;
}

/// Emits the signals of `Kestrio`.
class Signals final : public KestrioKit::FacadeObserver {
public:
    explicit Signals(Kestrio &kestrio) : m_kestrio(kestrio) {}

    void visitorIdentifierChanged() override { Q_EMIT m_kestrio.visitorIdentifierChanged(); }
    void surveyHeldChanged() override { Q_EMIT m_kestrio.surveyHeldChanged(); }
    void surveyShown(qint64 surveyId) override { Q_EMIT m_kestrio.surveyShown(surveyId); }
    void questionAnswered(qint64 surveyId, int index) override {
        Q_EMIT m_kestrio.questionAnswered(surveyId, index);
    }
    void surveyEnded(qint64 surveyId, SurveySession::Outcome outcome) override {
        Q_EMIT m_kestrio.surveyEnded(surveyId, outcome);
    }
    void disabled(const DisabledError &error) override {
        Q_EMIT m_kestrio.disabled(reason(error), error.localizedDescription());
    }
    void enabled() override { Q_EMIT m_kestrio.enabled(); }

private:
    Kestrio &m_kestrio;
};

} // namespace

Kestrio &Kestrio::shared() {
    // Never destroyed, because hosts may call while the process ends.
    static auto *const kestrio = new Kestrio(KestrioCore::shared());
    return *kestrio;
}

Kestrio::Kestrio(std::shared_ptr<KestrioCore> core) : m_core(std::move(core)) {
    const QCoreApplication *const application = QCoreApplication::instance();
    moveToThread(application ? application->thread() : nullptr);
    // Never destroyed, like this object.
    m_core->setObserver(new Signals(*this));
    // The main thread is unknown until there is an application object. That thread may then pull
    // this object, because it belongs to no thread. The observations are never destroyed, like this
    // object.
    using Event = ApplicationLifecycle::Event;
    ApplicationLifecycle &lifecycle = ApplicationLifecycle::shared();
    static const auto *const observations =
        new std::array{lifecycle.observe(Event::created,
                                         [this] {
                                             if (!thread())
                                                 moveToThread(QThread::currentThread());
                                         }),
                       lifecycle.observe(Event::terminated, [this] {
                           if (thread() == QThread::currentThread())
                               moveToThread(nullptr);
                       })};
    static_cast<void>(observations);
}

Kestrio::~Kestrio() = default;

void Kestrio::setLogHandler(const LogHandler &handler) {
    if (!handler)
        return KestrioKit::setLogHandler({});
    KestrioKit::setLogHandler(
        [handler](LogLevel level, const QString &line) { handler(messageType(level), line); });
}

QVariant Kestrio::visitorIdentifierValue() const {
    const std::optional<qint64> identifier = visitorIdentifier();
    return identifier ? QVariant(*identifier) : QVariant();
}

bool Kestrio::isSurveyHeld() const {
    return counts() && m_core->survey().has_value();
}

std::optional<qint64> Kestrio::visitorIdentifier() const {
    return counts() ? m_core->api()->visitorIdentifier() : std::nullopt;
}

bool Kestrio::disableNetworkAccess() const {
    return m_core->disableNetworkAccess();
}

void Kestrio::setDisableNetworkAccess(bool disable) {
    if (!counts())
        return;
    const bool isChange = disable != m_core->disableNetworkAccess();
    m_core->setDisableNetworkAccess(disable);
    if (isChange)
        KestrioKit::onMain([this] { Q_EMIT disableNetworkAccessChanged(); });
}

void Kestrio::setQueueLimit(int limit) {
    if (counts())
        m_core->setQueueLimit(limit);
}

bool Kestrio::retriesStartUp() const {
    return m_core->retriesStartUp();
}

void Kestrio::setRetriesStartUp(bool retries) {
    if (!counts())
        return;
    const bool isChange = retries != m_core->retriesStartUp();
    m_core->setRetriesStartUp(retries);
    if (isChange)
        KestrioKit::onMain([this] { Q_EMIT retriesStartUpChanged(); });
}

bool Kestrio::savesPromptly() const {
    return m_core->savesPromptly();
}

void Kestrio::setSavesPromptly(bool saves) {
    if (!counts())
        return;
    const bool isChange = saves != m_core->savesPromptly();
    m_core->setSavesPromptly(saves);
    if (isChange)
        KestrioKit::onMain([this] { Q_EMIT savesPromptlyChanged(); });
}

void Kestrio::setServiceHost(const QString &host) {
    if (counts())
        m_core->setServiceHost(host);
}

SurveyAppearance Kestrio::appearance() const {
    return m_core->appearance();
}

void Kestrio::setAppearance(SurveyAppearance appearance) {
    if (!counts())
        return;
    const bool isChange = appearance != m_core->appearance();
    m_core->setAppearance(appearance);
    if (isChange)
        KestrioKit::onMain([this] { Q_EMIT appearanceChanged(); });
}

void Kestrio::configure(const QString &environment) {
    if (!counts())
        return;
    ApplicationLifecycle::claimProcess();
    m_core->configure(environment);
}

void Kestrio::setLocale(const QString &locale) {
    if (counts())
        m_core->setLocale(locale);
}

void Kestrio::setUserIdentifier(const QString &userIdentifier) {
    if (counts())
        m_core->setUserIdentifier(userIdentifier);
}

void Kestrio::setEmailAddress(const QString &email) {
    if (counts())
        m_core->setEmailAddress(email);
}

void Kestrio::setVisitorAttribute(const QString &key, const QString &value) {
    if (counts())
        m_core->setVisitorAttribute(key, value);
}

void Kestrio::setVisitorAttributes(const QMap<QString, QString> &attributes) {
    if (counts())
        m_core->setVisitorAttributes(attributes);
}

void Kestrio::removeVisitorAttributes(const QStringList &keys) {
    if (counts())
        m_core->removeVisitorAttributes(keys);
}

void Kestrio::track(const QString &eventName, const TrackHandler &handler) {
    if (counts())
        m_core->track(eventName, handler);
}

void Kestrio::track(const QString &eventName, const QObject *context, const TrackHandler &handler) {
    track(eventName, guarded(context, handler));
}

void Kestrio::presentSurvey(QObject *from) {
    if (counts())
        m_core->presentSurvey(from);
}

void Kestrio::presentSurvey(qint64 surveyId, QObject *from,
                            const FetchCompletion &fetchCompletion) {
    if (counts())
        m_core->presentSurvey(surveyId, from, fetchCompletion);
}

void Kestrio::presentSurvey(qint64 surveyId, QObject *from, const QObject *context,
                            const FetchCompletion &fetchCompletion) {
    presentSurvey(surveyId, from, guarded(context, fetchCompletion));
}

void Kestrio::presentDebugSurvey(QObject *from) {
    if (counts())
        m_core->presentDebugSurvey(from);
}

std::unique_ptr<SurveySession> Kestrio::startSurvey() {
    return counts() ? m_core->startSurvey() : nullptr;
}

void Kestrio::startSurvey(qint64 surveyId, const SessionReceiver &receiver) {
    if (counts())
        m_core->startSurvey(
            surveyId, [] { return true; }, receiver);
}

void Kestrio::startSurvey(qint64 surveyId, const QObject *context,
                          const SessionReceiver &receiver) {
    if (counts())
        m_core->startSurvey(
            surveyId, [context = QPointer(context)] { return !context.isNull(); }, receiver);
}

std::unique_ptr<SurveySession> Kestrio::startDebugSurvey() {
    return counts() ? m_core->startDebugSurvey() : nullptr;
}

void Kestrio::logout() {
    if (counts())
        m_core->logout();
}

void Kestrio::withdrawConsent() {
    if (counts())
        m_core->withdrawConsent();
}

std::optional<QVariant> Kestrio::perform(const QString &selector, const QVariantList &arguments) {
    if (!counts())
        return std::nullopt;
    return KestrioKit::performSelector(*this, selector, arguments);
}
