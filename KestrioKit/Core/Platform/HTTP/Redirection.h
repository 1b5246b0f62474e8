#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"

#include <optional>

namespace KestrioKit {

/// Returns the request to which a response with the status of a redirection leads, including
/// headers and body. Returns nothing if the redirection must not be followed. It is followed only
/// to the same origin (scheme, host and port, RFC 6454), so that credentials are not sent
/// elsewhere, and only if the method does not change: a record sent as a GET request would be lost.
std::optional<URLRequest> redirectedRequest(const URLRequest &request, int statusCode,
                                            const QUrl &target);

} // namespace KestrioKit
