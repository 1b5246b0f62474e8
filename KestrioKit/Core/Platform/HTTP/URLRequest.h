#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <chrono>

namespace KestrioKit {

/// A header of a request or an answer (RFC 9110). Names compare without regard to case.
struct HTTPHeader {
    QByteArray name;
    QByteArray value;

    friend bool operator==(const HTTPHeader &, const HTTPHeader &) = default;
};

/// One HTTP request, ready to be sent.
struct URLRequest {
    QByteArray method;
    QUrl url;
    /// In the order in which they are sent.
    QList<HTTPHeader> headers;
    /// Empty for a request without a body.
    QByteArray body;
    /// How long nothing at all may arrive before the request fails.
    std::chrono::seconds timeout{60};

    friend bool operator==(const URLRequest &, const URLRequest &) = default;
};

/// What an HTTP answer says besides its body.
struct HTTPURLResponse {
    int statusCode = 0;

    friend bool operator==(const HTTPURLResponse &, const HTTPURLResponse &) = default;
};

} // namespace KestrioKit
