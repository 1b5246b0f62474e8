#pragma once

#include "KestrioKit/Core/Platform/Error.h"
#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// What became of a request. An answer that breaks off has both a response and an error.
struct URLResult {
    /// The body; absent when there is no whole answer.
    std::optional<QByteArray> data;
    std::optional<HTTPURLResponse> response;
    std::optional<Error> error;
    /// Whether the end of the application object cut the request off. There is an error then, too.
    bool cutOff = false;
};

using URLCompletion = std::function<void(const URLResult &)>;

/// What carries requests to the network. The library has one; tests may put their own in its place.
class URLTransport {
public:
    /// What is done with the body of an answer.
    enum class Body {
        /// Kept whole; an answer with more than `maximumBodySize` fails.
        keep,
        /// Thrown away as it comes; only the status counts.
        discard,
    };

    virtual ~URLTransport() = default;

    /// Sends the request, once, and calls `completion` once, never within this call. A request that
    /// the end of the application object cuts off completes when another one starts, with an error;
    /// without another one it never does. Thread-safe.
    virtual void send(URLRequest request, Body body, URLCompletion completion) = 0;

    /// How many requests are out. Each counts until its completion has returned. Thread-safe.
    virtual int tasksInFlight() const = 0;

    static constexpr qint64 maximumBodySize = 10 * 1024 * 1024;
};

/// An error of `transportErrorDomain`: "The request to <host> failed: <reason>."
Error transportError(const URLRequest &request, int code, const QString &reason);
/// The error of a record whose answer has a status that says neither that the service has it nor
/// that it never will: a redirection that is not followed, such as a captive portal's, or a status
/// of 600 and above. Absent for every other status.
std::optional<Error> undecidedError(const URLRequest &request, int statusCode);

/// Requests that share headers. Immutable, thus thread-safe.
class URLSession {
public:
    URLSession(std::shared_ptr<URLTransport> transport, QList<HTTPHeader> additionalHeaders);

    const QList<HTTPHeader> &additionalHeaders() const { return m_additionalHeaders; }

    /// Sends `request` with the session's headers in front of its own. See `URLTransport::send`.
    void dataTask(URLRequest request, URLTransport::Body body, URLCompletion completion) const;

private:
    std::shared_ptr<URLTransport> m_transport;
    QList<HTTPHeader> m_additionalHeaders;
};

} // namespace KestrioKit
