#include "KestrioKit/Core/Facade/FacadeLog.h"
#include "KestrioKit/Core/Facade/StartUp.h"

#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView launchEvent("iOS Launch");

using Action = Bootstrap::Action;
using Sequence = Bootstrap::Sequence;

void logReceived(const ResponseVisitors &visitor) {
    const bool hasToken = visitor.token && !visitor.token->isEmpty();
    logLine(u"Received visitor id: %1 - Auth Token? %2"_s.arg(visitor.visitorIdentifier)
                .arg(hasToken ? "YES"_L1 : "NO"_L1),
            LogCategory::info);
}

} // namespace

// The visitor

Block StartUp::visitorRequest(const std::optional<QString> &userIdentifier,
                              Authorization authorization, Purpose purpose) {
    const RequestNumber request = m_identity.beginRequest();
    m_awaitedRequest = request;
    return [self = shared_from_this(), userIdentifier, authorization, purpose, request] {
        self->m_api->fetchVisitorIdentifier(userIdentifier, authorization,
                                            [self, request, purpose](const VisitorAnswer &answer) {
                                                self->visitorReceived(request, purpose, answer);
                                            });
    };
}

void StartUp::visitorReceived(RequestNumber request, Purpose purpose, const VisitorAnswer &answer) {
    if (!answer.value) {
        fail(request, purpose, answer);
        return;
    }
    const ResponseVisitors &visitor = *answer.value;
    bool isNew = false;
    Block send;
    {
        const std::lock_guard guard(m_lock);
        const auto saved = m_identity.saveAuthorizationInfo(request, [&](const LocalData &known) {
            return LocalData{visitor.token, visitor.visitorIdentifier, known.userIdentifier};
        });
        if (!saved)
            return;
        noteAnswer(request);
        const auto last = std::exchange(m_launchedVisitor, visitor.visitorIdentifier);
        isNew = !isRepeated() || last != m_launchedVisitor;
        send = arrive(saved->userIdentifier ? Sequence::userId : Sequence::visitorId);
    }
    if (isNew)
        logReceived(visitor);
    if (send)
        send();
    if (isNew)
        trackLaunch();
}

// A user set meanwhile is attached first. The response to that request releases the held calls.
Block StartUp::arrive(Sequence sequence) {
    const bool moved = m_bootstrap->step(sequence);
    const std::optional<QString> pending = m_bootstrap->userId();
    if (m_phase != Phase::idle && sequence == Sequence::visitorId && pending) {
        if (Block send = attachRequest(*pending, Purpose::pendingUser))
            return send;
    }
    succeed(moved);
    return {};
}

void StartUp::succeed(bool moved) {
    if (isRepeated()) {
        endRepeating();
        // Comes before the held calls are released, because they check for it.
        m_api->setDisabledError(std::nullopt);
        m_api->resumeSubmissions();
    }
    announceEnd(u"Start-up has succeeded."_s);
    m_phase = Phase::idle;
    if (moved)
        m_bootstrap->flush();
    else
        releaseIfThereIsAVisitor();
}

void StartUp::trackLaunch() {
    m_api->queueEvent(launchEvent);
}

// Users

void StartUp::setUserIdentifier(const QString &userIdentifier) {
    if (readyState() == Action::skip && !isRepeated())
        return;
    Block send;
    {
        const std::lock_guard guard(m_lock);
        if (isRepeated())
            return m_bootstrap->replaceUserId(userIdentifier);
        if (m_bootstrap->setUserId(userIdentifier) || m_bootstrap->action() != Action::doit)
            return;
        // A start-up after a failure must request this user, too.
        if (m_awaitsVisitor)
            m_bootstrap->replaceUserId(userIdentifier);
        send = attachRequest(userIdentifier, Purpose::laterUser);
    }
    if (send)
        send();
}

Block StartUp::attachRequest(const QString &userIdentifier, Purpose purpose) {
    if (m_identity.isKnownUser(userIdentifier))
        return {};
    const std::optional<qint64> visitorBefore = m_api->visitorIdentifier();
    const bool isOther = m_identity.localData().userIdentifier.has_value();
    if (!visitorBefore || isOther)
        return visitorRequest(userIdentifier,
                              isOther ? Authorization::none : Authorization::visitor, purpose);
    const Attachment attachment{m_identity.beginRequest(), userIdentifier, visitorBefore, purpose};
    if (purpose == Purpose::pendingUser)
        m_pendingAttach = attachment.request;
    return [self = shared_from_this(), attachment] {
        self->m_api->setUserIdentifier(attachment.userIdentifier,
                                       [self, attachment](const VisitorAnswer &answer) {
                                           self->attachmentAnswered(attachment, answer);
                                       });
    };
}

void StartUp::attachmentAnswered(const Attachment &attachment, const VisitorAnswer &answer) {
    const bool failed = answer.error.has_value();
    if (failed)
        fail(attachment.request, attachment.purpose, answer);
    bool launches = false;
    Block send;
    {
        const std::lock_guard guard(m_lock);
        const bool endsStartUp = m_pendingAttach == attachment.request;
        if (endsStartUp)
            m_pendingAttach.reset();
        launches = !failed && settleAttachment(attachment, answer.value);
        if (!failed)
            noteAnswer(attachment.request);
        const bool moved = launches && m_bootstrap->step(Sequence::userId);
        if (endsStartUp)
            send = nextAttachRequest(attachment);
        if (endsStartUp && !send)
            succeed(moved);
        else if (moved)
            m_bootstrap->flush();
        else
            releaseIfThereIsAVisitor();
    }
    if (launches)
        trackLaunch();
    if (send)
        send();
}

// The host may have set another user while start-up was retried.
Block StartUp::nextAttachRequest(const Attachment &attachment) {
    const std::optional<QString> pending = m_bootstrap->userId();
    if (!isRepeated() || !pending || pending == attachment.userIdentifier)
        return {};
    return attachRequest(*pending, Purpose::pendingUser);
}

// Returns whether there may be another visitor now. A response without a record does not say.
bool StartUp::settleAttachment(const Attachment &attachment,
                               const std::optional<ResponseVisitors> &visitor) {
    if (!visitor)
        return m_identity.settle(attachment.request);
    const auto saved = m_identity.saveAuthorizationInfo(attachment.request, [&](const LocalData &) {
        return LocalData{visitor->token, visitor->visitorIdentifier, attachment.userIdentifier};
    });
    return saved && saved->visitorIdentifier != attachment.visitorBefore;
}

// A response to an earlier request names a visitor that the host no longer wants.
void StartUp::noteAnswer(RequestNumber request) {
    if (request >= m_awaitedRequest)
        m_awaitsVisitor = false;
}

// After a logout the held calls wait for the next visitor.
void StartUp::releaseIfThereIsAVisitor() {
    if (!isRepeated() && !m_awaitsVisitor && !m_pendingAttach &&
        m_bootstrap->action() == Action::doit && m_api->visitorIdentifier())
        m_bootstrap->flushHeld();
}

void StartUp::logout() {
    Block send;
    {
        const std::lock_guard guard(m_lock);
        const bool holdsForNobody = isRepeated() || m_awaitsVisitor;
        // Comes first, because no call may run without a visitor.
        if (!isRepeated() && m_bootstrap->action() == Action::doit) {
            m_bootstrap->holdAgain();
            m_awaitsVisitor = true;
        }
        m_identity.clearAuthorizationInfo();
        // Its response is ignored, or never arrives.
        m_pendingAttach.reset();
        // Otherwise a retried start-up would sign the user in again.
        if (m_retries)
            m_bootstrap->replaceUserId(std::nullopt);
        if (holdsForNobody)
            m_bootstrap->dropHeld();
        if (m_phase == Phase::waiting)
            return;
        if (m_phase == Phase::starting)
            m_phase = Phase::idle;
        send = m_phase == Phase::repeating
                   ? configRequest()
                   : visitorRequest(std::nullopt, Authorization::visitor, Purpose::visitor);
    }
    send();
}

} // namespace KestrioKit
