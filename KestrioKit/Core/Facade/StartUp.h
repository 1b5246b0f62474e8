#pragma once

#include "KestrioKit/Core/Facade/Bootstrap.h"
#include "KestrioKit/Core/Facade/Identity.h"
#include "KestrioKit/Core/Facade/RepeatSchedule.h"
#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Protocol/ResponseConfig.h"
#include "KestrioKit/Core/Protocol/ResponseVisitors.h"
#include "KestrioKit/Core/Protocol/ServiceAnswer.h"
#include "KestrioKit/Core/Service/KestrioService.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// Runs start-up from `configure()` to a visitor, and the change from one visitor to the next.
/// Requests the configuration and the visitor, attaches users, and decides which calls may run
/// meanwhile.
///
/// A start-up that fails for a temporary reason is retried. Until it succeeds, the library is
/// disabled for the host, but keeps what it can deliver later. Thread-safe.
class StartUp final : public std::enable_shared_from_this<StartUp> {
public:
    static std::shared_ptr<StartUp> make(std::shared_ptr<KestrioService> api,
                                         const LibraryContext &context);
    Q_DISABLE_COPY_MOVE(StartUp)

    /// Returns the configuration from the last successful request, if there was one.
    std::optional<ResponseConfig> config() const { return m_config.value(); }

    /// Returns what to do with a call that the host makes now.
    Bootstrap::Action readyState() const;
    /// Holds a call until there is a visitor.
    void hold(HeldCall call) { m_bootstrap->enqueue(std::move(call)); }
    /// Keeps an event or attribute change that would be dropped. While start-up is being retried,
    /// the call is queued as a record of the stored visitor, or held until there is a visitor.
    /// Returns `queue` if the call was kept. Otherwise returns what to do with it, as
    /// `readyState()` does.
    Bootstrap::Action keep(HeldCall call);
    /// Returns whether start-up has failed and is being retried.
    bool isRepeated() const { return m_phase >= Phase::waiting; }
    /// Returns whether the host has logged out and the next visitor is not known yet.
    bool awaitsVisitor() const { return m_awaitsVisitor; }

    // The operations of `Kestrio`, documented there.
    void setQueueLimit(int limit);
    bool retries() const { return m_retries; }
    void setRetries(bool retries);
    void configure(const QString &environment);
    void setUserIdentifier(const QString &userIdentifier);
    /// Must not be called before there is a visitor, unless start-up is being retried.
    void logout();
    void setServiceHost(const QString &host);
    void withdrawConsent();

    /// Must be called after the host has allowed network access.
    void networkAllowed();

private:
    using RequestNumber = Identity::RequestNumber;

    enum class Phase {
        /// No start-up is under way: none has begun, or it has ended.
        idle,
        /// Requests are in flight.
        starting,
        /// Start-up has failed and waits for the next retry.
        waiting,
        /// Requests of a retry are in flight.
        repeating,
    };
    /// The purpose of a request.
    enum class Purpose {
        configuration,
        visitor,
        /// The user that the host has set during start-up, or later.
        pendingUser,
        laterUser,
    };
    using Authorization = KestrioService::Authorization;
    using ConfigAnswer = ServiceAnswer<ResponseConfig>;
    using VisitorAnswer = ServiceAnswer<ResponseVisitors>;

    /// A user who is being attached to an anonymous visitor.
    struct Attachment {
        RequestNumber request;
        QString userIdentifier;
        std::optional<qint64> visitorBefore;
        Purpose purpose;
    };

    StartUp(std::shared_ptr<KestrioService> api, const LibraryContext &context);

    /// The number of calls of `configure()` and `withdrawConsent()`.
    using Generation = int;
    void begin(Generation generation);
    void configReceived(RequestNumber request, const ConfigAnswer &answer);
    void visitorReceived(RequestNumber request, Purpose purpose, const VisitorAnswer &answer);
    void attachmentAnswered(const Attachment &attachment, const VisitorAnswer &answer);
    void fail(RequestNumber request, Purpose purpose, const SimpleAnswer &answer);
    void repeat(RepeatSchedule::Occasion occasion);
    void applicationEnds();
    void trackLaunch();

    // Called with the lock held. Returned blocks send a request and must run without the lock.
    Block configRequest();
    Block visitorRequest(const std::optional<QString> &userIdentifier, Authorization authorization,
                         Purpose purpose);
    Block attachRequest(const QString &userIdentifier, Purpose purpose);
    Block nextAttachRequest(const Attachment &attachment);
    Block arrive(Bootstrap::Sequence sequence);
    void succeed(bool moved);
    bool settleAttachment(const Attachment &attachment,
                          const std::optional<ResponseVisitors> &visitor);
    void releaseIfThereIsAVisitor();
    void noteAnswer(RequestNumber request);
    void forgetAll();
    void voidRequests();
    bool mayPass(const SimpleAnswer &answer) const;
    void awaitRepeat();
    void beginRepeating();
    void endRepeating();
    void giveUp();
    /// Logs that start-up is being retried, or how that has ended. Each is logged once.
    void announceFailure();
    void announceEnd(const QString &line);
    bool recordsAreTheVisitors() const;

    Executor &m_executor;
    const std::shared_ptr<KestrioService> m_api;
    Identity m_identity;
    const std::shared_ptr<Bootstrap> m_bootstrap;
    std::shared_ptr<RepeatSchedule> m_schedule;
    ApplicationLifecycle::Observation m_willTerminateObserver;
    Atomic<std::optional<ResponseConfig>> m_config;
    std::atomic<bool> m_retries = true;
    /// Changed only with the lock held.
    std::atomic<Phase> m_phase = Phase::idle;
    std::atomic<bool> m_awaitsVisitor = false;
    std::atomic<Generation> m_generation = 0;

    /// Held while the sequence, the disabled state, the identity and the phase change, so that they
    /// change together. Never held while a request is sent, because its completion may be called
    /// before sending returns.
    std::mutex m_lock;
    /// The last request for the awaited visitor.
    RequestNumber m_awaitedRequest = 0;
    /// The request that attaches the pending user. The held calls wait for its response.
    std::optional<RequestNumber> m_pendingAttach;
    /// The visitor whose launch event was tracked last.
    std::optional<qint64> m_launchedVisitor;
    /// The number of failures of this start-up.
    int m_failures = 0;
    /// Whether a log line has said that start-up has failed.
    bool m_isAnnounced = false;
    /// Whether the network became reachable again while a request was in flight.
    bool m_networkIsBack = false;
    /// Whether a retry is due and waits only for the host to allow network access.
    bool m_isDue = false;
};

} // namespace KestrioKit
