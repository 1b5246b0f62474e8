#pragma once

#include "KestrioKit/Core/Protocol/DisabledError.h"
#include "KestrioKit/Core/Protocol/ServiceAnswer.h"
#include "KestrioKit/Core/Queue/QueueableRequest.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace KestrioKit {

/// Receives the outcome of a request whose response body is not needed.
using SimpleCompletion = std::function<void(const SimpleAnswer &answer)>;

/// A visitor, and the token that authorizes requests on the visitor's behalf. Both are absent while
/// there is no visitor.
struct VisitorCredentials {
    std::optional<qint64> visitorIdentifier;
    std::optional<QString> token;
};

/// States what `SubmissionSender::submit()` did.
enum class Submission {
    /// The records are being sent. Their outcome goes to the completion.
    started,
    /// Nothing is sent, because no request can be built for these records. Sending them again is of
    /// no use.
    impossible,
    /// Nothing is sent, because servers commonly refuse a request of this size. Fewer records may
    /// fit.
    tooLarge,
};

/// The part of the network service that the queue uses. The service owns the queue. Thread-safe.
class SubmissionSender {
public:
    virtual ~SubmissionSender() = default;

    /// Sends the records in one request, as the given visitor. `records` is either a list of events
    /// or a single record of another kind. A single record is never `tooLarge`. `completion` is
    /// called once if the submission is `started`, maybe before this function returns. Otherwise it
    /// is not called.
    virtual Submission submit(const QList<QueueableRequest> &records,
                              const VisitorCredentials &visitor, SimpleCompletion completion) = 0;

    /// Returns the service's host name without a port.
    virtual QString serviceHost() const = 0;
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
