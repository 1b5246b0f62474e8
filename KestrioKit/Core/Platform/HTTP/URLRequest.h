#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <chrono>

namespace KestrioKit {

/// A header of a request or a response (RFC 9110).
struct HTTPHeader {
    QByteArray name;
    QByteArray value;

    friend bool operator==(const HTTPHeader &, const HTTPHeader &) = default;
};

/// An HTTP request that is ready to be sent.
struct URLRequest {
    QByteArray method;
    QUrl url;
    /// The headers, in the order in which they are sent.
    QList<HTTPHeader> headers;
    /// The body. Empty for a request without a body.
    QByteArray body;
    /// The request fails if nothing arrives for this time. Default: 60 seconds.
    std::chrono::seconds timeout{60};

    friend bool operator==(const URLRequest &, const URLRequest &) = default;
};

/// An HTTP response without its body.
struct HTTPURLResponse {
    int statusCode = 0;

    friend bool operator==(const HTTPURLResponse &, const HTTPURLResponse &) = default;
};

} // namespace KestrioKit
