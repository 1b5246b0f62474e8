#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"
#include "KestrioKit/Core/Protocol/DisabledError.h"
#include "KestrioKit/Core/Protocol/KestrioServiceRequests.h"

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// What becomes of a request of which only the status counts.
using SimpleCompletion =
    std::function<void(std::optional<HTTPURLResponse> response, std::optional<Error> error)>;

/// What the queue needs of the network service, which owns the queue. Thread-safe.
class SubmissionSender {
public:
    virtual ~SubmissionSender() = default;

    virtual const KestrioServiceRequests &networkRequests() const = 0;
    /// Sends a request with that token. `completion` may be called within this call.
    virtual void sendSimpleRequest(const URLRequest &request, const std::optional<QString> &token,
                                   SimpleCompletion completion) = 0;

    virtual std::optional<DisabledError> disabledError() const = 0;
    virtual std::optional<qint64> visitorIdentifier() const = 0;
    virtual std::optional<QString> authorizationToken() const = 0;

    /// Takes an error that nobody waits for.
    virtual void handleError(const Error &error) = 0;
};

} // namespace KestrioKit
