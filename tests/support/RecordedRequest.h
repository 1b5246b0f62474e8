#pragma once

#include "KestrioKit/Platform/URLRequest.h"

#include <optional>

namespace KestrioKit {

/// A request as it came over the wire.
struct RecordedRequest {
    QByteArray method;
    /// Path and query, as sent.
    QByteArray target;
    /// In the order in which they came.
    QList<HTTPHeader> headers;
    QByteArray body;
    /// On which of the server's connections, counted from 1.
    int connection = 0;
    std::chrono::steady_clock::time_point arrival;

    /// The header's value; absent when it was not sent.
    std::optional<QByteArray> header(const QByteArray &name) const;
};

/// Takes the first whole request off `bytes`; absent while there is none.
std::optional<RecordedRequest> takeRequest(QByteArray &bytes);

} // namespace KestrioKit
