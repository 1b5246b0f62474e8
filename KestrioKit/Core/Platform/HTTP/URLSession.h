#pragma once

#include "KestrioKit/Core/Platform/Error.h"
#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// The outcome of a request. A response that breaks off has both a response and an error.
struct URLResult {
    /// The response's body. Empty if the body is discarded. Absent if there is an error.
    std::optional<QByteArray> data;
    /// Absent if no response was received.
    std::optional<HTTPURLResponse> response;
    /// Absent if a complete response with a status of 200 or above was received. Too many
    /// redirections are an error, too.
    std::optional<Error> error;
    /// Whether the end of the application object interrupted the request. `error` is set then, too.
    bool cutOff = false;
};

/// Receives the outcome of a request.
using URLCompletion = std::function<void(const URLResult &)>;

/// Sends requests over the network. The library uses one transport. Tests may replace it.
class URLTransport {
public:
    /// How the body of a response is handled.
    enum class Body {
        /// Keeps the whole body. A body larger than `maximumBodySize` is an error.
        keep,
        /// Discards the body while it arrives, and stops reading after `maximumBodySize`. Only the
        /// status is reported.
        discard,
    };

    virtual ~URLTransport() = default;

    /// Sends the request once and calls `completion` once, never within this call. If the end of
    /// the application object interrupts the request, it completes with an error after another
    /// application object is created. Without another one it never completes. Thread-safe.
    virtual void send(URLRequest request, Body body, URLCompletion completion) = 0;

    /// Ends all requests in flight. They complete with an error, after this call has returned.
    /// Thread-safe.
    virtual void cancelAll() = 0;

    /// The maximum size of a response's body that is read, in bytes.
    static constexpr qint64 maximumBodySize = 10 * 1024 * 1024;
};

/// Returns an error of `transportErrorDomain`: "The request to <host> failed: <reason>." `code` is
/// a `QNetworkReply::NetworkError`.
Error transportError(const URLRequest &request, int code, const QString &reason);
/// Returns an error if the response's status leaves open whether the service accepted or refused a
/// record. This holds for a redirection that is not followed, such as that of a captive portal, and
/// for a status of 600 and above. Returns nothing for every other status.
std::optional<Error> undecidedError(const URLRequest &request, int statusCode);

/// Sends requests that share headers. Immutable and thus thread-safe.
class URLSession {
public:
    URLSession(std::shared_ptr<URLTransport> transport, QList<HTTPHeader> additionalHeaders);

    const QList<HTTPHeader> &additionalHeaders() const { return m_additionalHeaders; }

    /// Sends `request` with the session's headers before its own. See `URLTransport::send()`.
    void dataTask(URLRequest request, URLTransport::Body body, URLCompletion completion) const;

private:
    std::shared_ptr<URLTransport> m_transport;
    QList<HTTPHeader> m_additionalHeaders;
};

} // namespace KestrioKit
