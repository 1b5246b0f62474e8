#pragma once

#include "KestrioKit/Facade/Bootstrap.h"
#include "KestrioKit/Facade/Identity.h"
#include "KestrioKit/Platform/LibraryContext.h"
#include "KestrioKit/Protocol/ResponseConfig.h"
#include "KestrioKit/Protocol/ResponseVisitors.h"
#include "KestrioKit/Service/KestrioService.h"

#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// Brings the library from `configure()` to a visitor, and from one visitor to the next: asks for
/// the configuration and the visitor, attaches users, and says which calls may run meanwhile.
/// Thread-safe.
class StartUp final : public std::enable_shared_from_this<StartUp> {
public:
    StartUp(std::shared_ptr<KestrioService> api, const LibraryContext &context);
    Q_DISABLE_COPY_MOVE(StartUp)

    /// The configuration from the last fetch that succeeded.
    std::optional<ResponseConfig> config() const { return m_config.value(); }

    /// What is to be done with a call that the host makes now.
    Bootstrap::Action readyState() const;
    /// Holds a call until there is a visitor.
    void hold(HeldCall call) { m_bootstrap->enqueue(std::move(call)); }

    // The operations of `Kestrio`, documented there.
    void setQueueLimit(int limit);
    void configure(const QString &environment);
    void setUserIdentifier(const QString &userIdentifier);
    /// Not before there is a visitor.
    void logout();

private:
    using RequestNumber = Identity::RequestNumber;

    /// A user who is being attached to an anonymous visitor.
    struct Attachment {
        RequestNumber request;
        QString userIdentifier;
        std::optional<qint64> visitorBefore;
    };

    void begin();
    void configReceived(RequestNumber request, const std::optional<ResponseConfig> &config,
                        const std::optional<Error> &error);
    void visitorReceived(RequestNumber request, const std::optional<ResponseVisitors> &visitor,
                         const std::optional<Error> &error);
    void attachmentAnswered(const Attachment &attachment,
                            const std::optional<ResponseVisitors> &visitor,
                            const std::optional<Error> &error);
    void fail(RequestNumber request, const std::optional<Error> &error);
    void trackLaunch();

    // With the lock held. Blocks that come back send a request: they are to be run without it.
    Block configRequest();
    Block visitorRequest(const std::optional<QString> &userIdentifier, bool anonymous);
    Block attachRequest(const QString &userIdentifier, bool isPending);
    Block arrive(Bootstrap::Sequence sequence);
    bool settleAttachment(const Attachment &attachment,
                          const std::optional<ResponseVisitors> &visitor);
    void releaseIfThereIsAVisitor();

    const std::shared_ptr<KestrioService> m_api;
    Identity m_identity;
    const std::shared_ptr<Bootstrap> m_bootstrap;
    Atomic<std::optional<ResponseConfig>> m_config;
    /// Held while the sequence, the disabled state and the identity change, so that they do so
    /// together. Never while a request is sent, since its completion may be called within the call.
    std::mutex m_lock;
    /// The request that attaches the pending user: the held calls wait for its answer.
    std::optional<RequestNumber> m_pendingAttach;
};

} // namespace KestrioKit
