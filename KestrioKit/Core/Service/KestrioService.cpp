#include "KestrioKit/Core/Service/KestrioService.h"

#include "KestrioKit/Core/Queue/StateFolder.h"

#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

KestrioService::KestrioService(std::shared_ptr<KestrioServiceRequests> builder,
                               const LibraryContext &context)
    : m_context(context), m_networkRequests(std::move(builder)), m_sessions(context.transport) {}

// Credentials and settings

std::optional<QString> KestrioService::authorizationToken() const {
    return m_sessions.authorizationToken();
}

std::optional<qint64> KestrioService::visitorIdentifier() const {
    return m_networkRequests->visitorIdentifier();
}

void KestrioService::authorize(const std::optional<QString> &token,
                               std::optional<qint64> visitorIdentifier) {
    const std::lock_guard guard(m_submissionQueueLock);
    // The queue comes first, so that a thread that sees the new visitor queues its records behind
    // this.
    if (m_submissionQueue)
        m_submissionQueue->updateAuth(visitorIdentifier, token);
    const bool isOther = visitorIdentifier != m_networkRequests->visitorIdentifier();
    m_sessions.setAuthorizationToken(token);
    m_networkRequests->setVisitorIdentifier(visitorIdentifier);
    if (!m_submissionQueue)
        makeSubmissionQueue();
    if (isOther && m_observer.visitorChanged)
        m_observer.visitorChanged();
}

void KestrioService::withdraw() {
    const std::lock_guard guard(m_submissionQueueLock);
    m_isWithdrawn = true;
    const bool isKnown = this->visitorIdentifier().has_value();
    m_sessions.forgetToken();
    m_networkRequests->setVisitorIdentifier({});
    m_networkRequests->setEnvironment({});
    m_context.transport->cancelAll();
    if (m_submissionQueue)
        m_submissionQueue->erase();
    if (isKnown && m_observer.visitorChanged)
        m_observer.visitorChanged();
}

void KestrioService::eraseStored() {
    const std::lock_guard guard(m_submissionQueueLock);
    // A queue has removed it, and holds its lock.
    if (!m_submissionQueue)
        StateFolder::eraseStored();
}

void KestrioService::setEnvironmentId(const QString &environmentId) {
    m_isWithdrawn = false;
    m_networkRequests->setEnvironment(environmentId);
}

void KestrioService::setLocale(const std::optional<QString> &locale) {
    m_sessions.setLocale(locale);
}

void KestrioService::setDisableNetworkAccess(bool disable) {
    const std::lock_guard guard(m_submissionQueueLock);
    m_disableNetworkAccess = disable;
    // A queue that is created later reads the flag itself. It is not created here: without a
    // visitor it would treat the stored records as another visitor's.
    if (m_submissionQueue)
        m_submissionQueue->setDisableNetworkAccess(disable);
}

void KestrioService::setSavesPromptly(bool saves) {
    const std::lock_guard guard(m_submissionQueueLock);
    m_savesPromptly = saves;
    if (m_submissionQueue)
        m_submissionQueue->setSavesPromptly(saves);
}

std::optional<DisabledError> KestrioService::disabledError() const {
    return m_disabledError.value();
}

void KestrioService::setDisabledError(const std::optional<DisabledError> &error) {
    const auto before =
        m_disabledError.mutate([&error](auto &known) { return std::exchange(known, error); });
    if (before != error && m_observer.disabledChanged)
        m_observer.disabledChanged(error);
    if (error)
        KSLog(LogLevel::debug, u"Kestrio SDK Disabled: "_s + printedForm(*error));
    else
        KSLog(LogLevel::debug, u"Kestrio SDK Enabled"_s);
}

void KestrioService::resumeSubmissions() {
    submissionQueue()->resume();
}

std::shared_ptr<SubmissionQueue> KestrioService::submissionQueue() {
    const std::lock_guard guard(m_submissionQueueLock);
    if (!m_submissionQueue)
        makeSubmissionQueue();
    return m_submissionQueue;
}

void KestrioService::makeSubmissionQueue() {
    m_submissionQueue = SubmissionQueue::make(weak_from_this(), m_context, m_queueLimit);
    m_submissionQueue->setDisableNetworkAccess(m_disableNetworkAccess);
    m_submissionQueue->setSavesPromptly(m_savesPromptly);
}

void KestrioService::handleError(const Error &error) {
    if (m_errorHandler)
        m_errorHandler(error);
}

void KestrioService::reportIdle(std::function<void(bool idle)> report) {
    m_context.executor.post([self = shared_from_this(), report = std::move(report)] {
        std::unique_lock guard(self->m_submissionQueueLock);
        // The queue is not created here, for the reason given in `setDisableNetworkAccess()`.
        const std::shared_ptr<SubmissionQueue> queue = self->m_submissionQueue;
        guard.unlock();
        report(*self->m_requestsInFlight == 0 && (!queue || queue->isIdle()));
    });
}

} // namespace KestrioKit
