#include "KestrioKit/Kestrio.h"

#include "KestrioKit/Facade/KestrioCore.h"
#include "KestrioKit/Facade/Selectors.h"

#include <QCoreApplication>
#include <QThread>
#include <QWidget>

using KestrioKit::KestrioCore;

Kestrio &Kestrio::shared() {
    // Never destroyed: hosts may call while the process ends.
    static auto *const kestrio = new Kestrio(KestrioCore::shared());
    return *kestrio;
}

Kestrio::Kestrio(std::shared_ptr<KestrioCore> core) : m_core(std::move(core)) {
    if (const QCoreApplication *const application = QCoreApplication::instance()) {
        moveToThread(application->thread());
    } else {
        // Which thread will be the main one is not known yet. It may fetch what belongs to none.
        moveToThread(nullptr);
        KestrioKit::DispatchQueue::main().async([this] { moveToThread(QThread::currentThread()); });
    }
}

Kestrio::~Kestrio() = default;

std::optional<qint64> Kestrio::visitorIdentifier() const {
    return m_core->api()->visitorIdentifier();
}

bool Kestrio::disableNetworkAccess() const {
    return m_core->disableNetworkAccess();
}

void Kestrio::setDisableNetworkAccess(bool disable) {
    m_core->setDisableNetworkAccess(disable);
}

void Kestrio::setQueueLimit(int limit) {
    m_core->setQueueLimit(limit);
}

bool Kestrio::retriesStartUp() const {
    return m_core->retriesStartUp();
}

void Kestrio::setRetriesStartUp(bool retries) {
    m_core->setRetriesStartUp(retries);
}

void Kestrio::configure(const QString &environment) {
    m_core->configure(environment);
}

void Kestrio::setLocale(const QString &locale) {
    m_core->setLocale(locale);
}

void Kestrio::setUserIdentifier(const QString &userIdentifier) {
    m_core->setUserIdentifier(userIdentifier);
}

void Kestrio::setEmailAddress(const QString &email) {
    m_core->setEmailAddress(email);
}

void Kestrio::setVisitorAttribute(const QString &key, const QString &value) {
    m_core->setVisitorAttribute(key, value);
}

void Kestrio::setVisitorAttributes(const QMap<QString, QString> &attributes) {
    m_core->setVisitorAttributes(attributes);
}

void Kestrio::removeVisitorAttributes(const QStringList &keys) {
    m_core->removeVisitorAttributes(keys);
}

void Kestrio::track(const QString &eventName, const TrackHandler &handler) {
    m_core->track(eventName, handler);
}

void Kestrio::presentSurvey(QWidget *from) {
    m_core->presentSurvey(from);
}

void Kestrio::presentSurvey(qint64 surveyId, QWidget *from,
                            const FetchCompletion &fetchCompletion) {
    m_core->presentSurvey(surveyId, from, fetchCompletion);
}

void Kestrio::presentDebugSurvey(QWidget *from) {
    m_core->presentDebugSurvey(from);
}

void Kestrio::logout() {
    m_core->logout();
}

std::optional<QVariant> Kestrio::perform(const QString &selector, const QVariantList &arguments) {
    return KestrioKit::performSelector(*this, selector, arguments);
}
