#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"
#include "KestrioKit/Core/Protocol/DisabledError.h"
#include "KestrioKit/Core/Protocol/KestrioServiceRequests.h"
#include "KestrioKit/Core/Protocol/ServiceAnswer.h"

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// Receives the outcome of a request whose response body is not needed.
using SimpleCompletion = std::function<void(const SimpleAnswer &answer)>;

/// The part of the network service that the queue uses. The service owns the queue. Thread-safe.
class SubmissionSender {
public:
    virtual ~SubmissionSender() = default;

    /// Returns the builder of the service's requests.
    virtual const KestrioServiceRequests &networkRequests() const = 0;
    /// Sends a request, authorized with `token`. `completion` may be called before this function
    /// returns.
    virtual void sendSimpleRequest(const URLRequest &request, const std::optional<QString> &token,
                                   SimpleCompletion completion) = 0;

    /// Returns why the service is disabled, or nothing while it is enabled.
    virtual std::optional<DisabledError> disabledError() const = 0;
    /// Returns the current visitor, if there is one.
    virtual std::optional<qint64> visitorIdentifier() const = 0;
    /// Returns the current visitor's token, if there is one.
    virtual std::optional<QString> authorizationToken() const = 0;

    /// Handles an error that no completion receives.
    virtual void handleError(const Error &error) = 0;
};

} // namespace KestrioKit
