#include "KestrioKit/Kestrio.h"

#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Core/Facade/Selectors.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"

#include <QCoreApplication>
#include <QThread>

#include <array>

using KestrioKit::ApplicationLifecycle;
using KestrioKit::KestrioCore;

namespace {

/// Whether a call counts, which every operation asks first.
bool counts() {
    return ApplicationLifecycle::shared().takesCalls();
}

} // namespace

Kestrio &Kestrio::shared() {
    // Never destroyed: hosts may call while the process ends.
    static auto *const kestrio = new Kestrio(KestrioCore::shared());
    return *kestrio;
}

Kestrio::Kestrio(std::shared_ptr<KestrioCore> core) : m_core(std::move(core)) {
    const QCoreApplication *const application = QCoreApplication::instance();
    moveToThread(application ? application->thread() : nullptr);
    // Which thread will be the main one is not known before there is an application object. It may
    // fetch what belongs to none. Never destroyed, as this object.
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

std::optional<qint64> Kestrio::visitorIdentifier() const {
    return counts() ? m_core->api()->visitorIdentifier() : std::nullopt;
}

bool Kestrio::disableNetworkAccess() const {
    return m_core->disableNetworkAccess();
}

void Kestrio::setDisableNetworkAccess(bool disable) {
    if (counts())
        m_core->setDisableNetworkAccess(disable);
}

void Kestrio::setQueueLimit(int limit) {
    if (counts())
        m_core->setQueueLimit(limit);
}

bool Kestrio::retriesStartUp() const {
    return m_core->retriesStartUp();
}

void Kestrio::setRetriesStartUp(bool retries) {
    if (counts())
        m_core->setRetriesStartUp(retries);
}

bool Kestrio::savesPromptly() const {
    return m_core->savesPromptly();
}

void Kestrio::setSavesPromptly(bool saves) {
    if (counts())
        m_core->setSavesPromptly(saves);
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

void Kestrio::presentSurvey(QObject *from) {
    if (counts())
        m_core->presentSurvey(from);
}

void Kestrio::presentSurvey(qint64 surveyId, QObject *from,
                            const FetchCompletion &fetchCompletion) {
    if (counts())
        m_core->presentSurvey(surveyId, from, fetchCompletion);
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
        m_core->startSurvey(surveyId, receiver);
}

std::unique_ptr<SurveySession> Kestrio::startDebugSurvey() {
    return counts() ? m_core->startDebugSurvey() : nullptr;
}

void Kestrio::logout() {
    if (counts())
        m_core->logout();
}

std::optional<QVariant> Kestrio::perform(const QString &selector, const QVariantList &arguments) {
    if (!counts())
        return std::nullopt;
    return KestrioKit::performSelector(*this, selector, arguments);
}
