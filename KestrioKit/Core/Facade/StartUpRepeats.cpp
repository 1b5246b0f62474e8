#include "KestrioKit/Core/Facade/FacadeLog.h"
#include "KestrioKit/Core/Facade/StartUp.h"
#include "KestrioKit/Core/Platform/HTTP/HTTPStatus.h"

#include <algorithm>
#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

using Action = Bootstrap::Action;
using Occasion = RepeatSchedule::Occasion;

bool isTemporary(int status) {
    const HTTPStatusClass kind = statusClass(status);
    return kind == HTTPStatusClass::redirection || kind == HTTPStatusClass::serverError ||
           status == HTTPStatus::requestTimeout || status == HTTPStatus::tooManyRequests;
}

} // namespace

// Calls that are kept while start-up is retried

Action StartUp::keep(HeldCall call) {
    const std::lock_guard guard(m_lock);
    if (isRepeated()) {
        if (m_api->disableNetworkAccess())
            return Action::skip;
        if (recordsAreTheVisitors())
            call.record();
        else
            m_bootstrap->enqueue(std::move(call));
        return Action::queue;
    }
    // Start-up may have succeeded since the caller checked.
    const Action action = readyState();
    if (action == Action::queue)
        m_bootstrap->enqueue(std::move(call));
    return action;
}

// Records of a user who is not attached yet must not go to the previous visitor.
bool StartUp::recordsAreTheVisitors() const {
    const std::optional<QString> pending = m_bootstrap->userId();
    return m_api->visitorIdentifier() && (!pending || m_identity.isKnownUser(*pending));
}

// Saves the records that can be delivered after the next start, which otherwise end with the
// process.
void StartUp::applicationEnds() {
    const std::lock_guard guard(m_lock);
    const bool isAnothers =
        m_identity.localData().userIdentifier.has_value() && !recordsAreTheVisitors();
    if (!m_retries || m_phase == Phase::idle || !m_api->visitorIdentifier() || isAnothers ||
        !m_bootstrap->holdsRecords())
        return;
    // Otherwise the records would be sent now, and again after the next start.
    voidRequests();
    awaitRepeat();
    m_bootstrap->recordHeldNow();
}

// Failures

// Voids all other requests in flight: a late success would leave the library disabled although it
// looks as if it had started.
void StartUp::fail(RequestNumber request, Purpose purpose, const SimpleAnswer &answer) {
    bool isReported = false;
    {
        const std::lock_guard guard(m_lock);
        isReported = !isRepeated();
        if (m_identity.settle(request)) {
            voidRequests();
            const bool isAwaited = m_awaitsVisitor.exchange(false);
            if (purpose != Purpose::configuration) {
                m_bootstrap->step(Bootstrap::Sequence::error);
                m_api->setDisabledError(DisabledError::locally());
            }
            if (m_retries && purpose != Purpose::laterUser && mayPass(answer)) {
                awaitRepeat();
                announceFailure();
            } else {
                giveUp();
                // They must not run for the visitor of another `configure()`.
                if (isAwaited)
                    m_bootstrap->dropHeld();
                isReported = true;
            }
        }
    }
    if (answer.error && isReported)
        m_api->handleError(*answer.error);
}

void StartUp::voidRequests() {
    m_identity.voidRequests();
    m_pendingAttach.reset();
}

bool StartUp::mayPass(const SimpleAnswer &answer) const {
    // The host has disabled network access since the first failure.
    if (answer.error && isDisabledError(*answer.error))
        return isRepeated() && m_api->disabledError() == DisabledError::locally();
    return answer.error || (answer.response && isTemporary(answer.response->statusCode));
}

void StartUp::giveUp() {
    if (isRepeated())
        endRepeating();
    announceEnd(u"Start-up is not repeated any more."_s);
    m_phase = Phase::idle;
}

// These log on the library's thread, so that a slow reader of the log does not block the host's
// thread.
void StartUp::announceFailure() {
    if (std::exchange(m_isAnnounced, true))
        return;
    m_executor.post([] {
        logLine(u"Start-up has failed. It is repeated until it succeeds."_s, LogCategory::info);
    });
}

void StartUp::announceEnd(const QString &line) {
    if (std::exchange(m_isAnnounced, false))
        m_executor.post([line] { logLine(line, LogCategory::info); });
}

// Repeats

void StartUp::awaitRepeat() {
    if (!isRepeated())
        beginRepeating();
    m_phase = Phase::waiting;
    const bool isNow = std::exchange(m_networkIsBack, false);
    m_schedule->wait(isNow ? 0 : startUpRepeatDelay(++m_failures));
}

void StartUp::beginRepeating() {
    m_failures = 0;
    m_api->setDisabledError(DisabledError::locally());
    m_api->setStartsOver(true);
    // Otherwise the queue would find out by sending, which counts as a failed attempt.
    if (m_api->visitorIdentifier())
        m_api->resumeSubmissions();
    m_bootstrap->holdAgain();
    if (recordsAreTheVisitors())
        m_bootstrap->recordHeld();
    m_schedule->begin(m_api->serviceHost());
}

void StartUp::endRepeating() {
    m_schedule->end();
    m_api->setStartsOver(false);
    m_networkIsBack = false;
    m_isDue = false;
}

void StartUp::repeat(Occasion occasion) {
    Block send;
    {
        const std::lock_guard guard(m_lock);
        if (m_phase == Phase::repeating && occasion == Occasion::networkIsBack)
            m_networkIsBack = true;
        if (m_phase != Phase::waiting)
            return;
        m_isDue = m_api->disableNetworkAccess();
        if (m_isDue)
            return;
        m_phase = Phase::repeating;
        send = configRequest();
    }
    send();
}

void StartUp::networkAllowed() {
    {
        const std::lock_guard guard(m_lock);
        if (!m_isDue)
            return;
    }
    repeat(Occasion::delayIsOver);
}

void StartUp::setRetries(bool retries) {
    const std::lock_guard guard(m_lock);
    m_retries = retries;
    if (!retries && isRepeated()) {
        voidRequests();
        giveUp();
    }
}

} // namespace KestrioKit
