#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"

#include <optional>

namespace KestrioKit {

/// Whether the status is one of a redirection (3xx).
bool isRedirection(int statusCode);

/// The request that an answer with the status of a redirection (3xx) leads to, headers and body
/// included; absent when it must not be followed. Only targets of the same origin (scheme, host and
/// port, RFC 6454) are, so that no credentials travel elsewhere, and only where the method stays
/// what it is: a record that turned into a GET would be lost.
std::optional<URLRequest> redirectedRequest(const URLRequest &request, int statusCode,
                                            const QUrl &target);

} // namespace KestrioKit
