#pragma once

#include "KestrioKit/Core/Facade/Bootstrap.h"
#include "KestrioKit/Core/Facade/Identity.h"
#include "KestrioKit/Core/Facade/RepeatSchedule.h"
#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Protocol/ResponseConfig.h"
#include "KestrioKit/Core/Protocol/ResponseVisitors.h"
#include "KestrioKit/Core/Service/KestrioService.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// Brings the library from `configure()` to a visitor, and from one visitor to the next: asks for
/// the configuration and the visitor, attaches users, and says which calls may run meanwhile.
///
/// A start-up that fails for a reason that may pass is repeated. Until one succeeds, the library is
/// disabled to the host, but keeps what it may deliver later. Thread-safe.
class StartUp final : public std::enable_shared_from_this<StartUp> {
public:
    static std::shared_ptr<StartUp> make(std::shared_ptr<KestrioService> api,
                                         const LibraryContext &context);
    Q_DISABLE_COPY_MOVE(StartUp)

    /// The configuration from the last fetch that succeeded.
    std::optional<ResponseConfig> config() const { return m_config.value(); }

    /// What is to be done with a call that the host makes now.
    Bootstrap::Action readyState() const;
    /// Holds a call until there is a visitor.
    void hold(HeldCall call) { m_bootstrap->enqueue(std::move(call)); }
    /// Takes an event or a change of attributes that is to be skipped. While start-up is repeated,
    /// it becomes a record of the stored visitor, or is held until there is one. Returns what is to
    /// be done with it otherwise, as `readyState()` does; `queue` when it was taken.
    Bootstrap::Action keep(HeldCall call);
    /// Whether start-up has failed and is being repeated, or will be.
    bool isRepeated() const { return m_phase >= Phase::waiting; }
    /// Whether the host has logged out, and the next visitor is not known yet.
    bool awaitsVisitor() const { return m_awaitsVisitor; }

    // The operations of `Kestrio`, documented there.
    void setQueueLimit(int limit);
    bool retries() const { return m_retries; }
    void setRetries(bool retries);
    void configure(const QString &environment);
    void setUserIdentifier(const QString &userIdentifier);
    /// Not before there is a visitor, unless start-up is repeated.
    void logout();
    void setServiceHost(const QString &host);
    void withdrawConsent();

    /// To be called after the host has allowed network access.
    void networkAllowed();

private:
    using RequestNumber = Identity::RequestNumber;

    enum class Phase {
        /// No start-up is under way: there was none, or it has ended.
        idle,
        /// Requests are on their way.
        starting,
        /// The start-up has failed, and waits to be repeated.
        waiting,
        /// The same as `starting`, after a failure.
        repeating,
    };
    /// Why a request is sent.
    enum class Purpose {
        configuration,
        visitor,
        /// The user whom the host gave during start-up, or later.
        pendingUser,
        laterUser,
    };
    using Response = std::optional<HTTPURLResponse>;

    /// A user who is being attached to an anonymous visitor.
    struct Attachment {
        RequestNumber request;
        QString userIdentifier;
        std::optional<qint64> visitorBefore;
        Purpose purpose;
    };

    StartUp(std::shared_ptr<KestrioService> api, const LibraryContext &context);

    /// Counts the calls of `configure()` and `withdrawConsent()`.
    using Generation = int;
    void begin(Generation generation);
    void configReceived(RequestNumber request, const std::optional<ResponseConfig> &config,
                        const Response &response, const std::optional<Error> &error);
    void visitorReceived(RequestNumber request, Purpose purpose,
                         const std::optional<ResponseVisitors> &visitor, const Response &response,
                         const std::optional<Error> &error);
    void attachmentAnswered(const Attachment &attachment,
                            const std::optional<ResponseVisitors> &visitor,
                            const std::optional<Error> &error);
    void fail(RequestNumber request, Purpose purpose, const Response &response,
              const std::optional<Error> &error);
    void repeat(RepeatSchedule::Occasion occasion);
    void applicationEnds();
    void trackLaunch();

    // With the lock held. Blocks that come back send a request: they are to be run without it.
    Block configRequest();
    Block visitorRequest(const std::optional<QString> &userIdentifier, bool anonymous,
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
    bool mayPass(const Response &response, const std::optional<Error> &error) const;
    void awaitRepeat();
    void beginRepeating();
    void endRepeating();
    void giveUp();
    void announce(bool fails, const QString &line);
    bool recordsAreTheVisitors() const;

    Executor &m_executor;
    const std::shared_ptr<KestrioService> m_api;
    Identity m_identity;
    const std::shared_ptr<Bootstrap> m_bootstrap;
    std::shared_ptr<RepeatSchedule> m_schedule;
    ApplicationLifecycle::Observation m_willTerminateObserver;
    Atomic<std::optional<ResponseConfig>> m_config;
    std::atomic<bool> m_retries = true;
    /// Changed with the lock held.
    std::atomic<Phase> m_phase = Phase::idle;
    std::atomic<bool> m_awaitsVisitor = false;
    std::atomic<Generation> m_generation = 0;

    /// Held while the sequence, the disabled state, the identity and the phase change, so that they
    /// do so together. Never while a request is sent, since its completion may be called within the
    /// call.
    std::mutex m_lock;
    /// The last request that asks for the visitor who is awaited.
    RequestNumber m_awaitedRequest = 0;
    /// The request that attaches the pending user: the held calls wait for its answer.
    std::optional<RequestNumber> m_pendingAttach;
    /// The visitor whose launch was tracked last.
    std::optional<qint64> m_launchedVisitor;
    /// How often this start-up has failed.
    int m_failures = 0;
    /// Whether the host has been told that start-up has failed.
    bool m_isAnnounced = false;
    /// Whether the network came back while a request was on its way.
    bool m_networkIsBack = false;
    /// Whether only the host's `setDisableNetworkAccess()` stands against a repeat.
    bool m_isDue = false;
};

} // namespace KestrioKit
