#pragma once

#include "KestrioKit/Platform/Error.h"
#include "KestrioKit/Platform/URLRequest.h"

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
    /// is still out when the application ends is dropped without a call. Thread-safe.
    virtual void send(URLRequest request, Body body, URLCompletion completion) = 0;

    /// How many requests are out. Each counts until its completion has returned. Thread-safe.
    virtual int tasksInFlight() const = 0;

    static constexpr qint64 maximumBodySize = 10 * 1024 * 1024;
};

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
