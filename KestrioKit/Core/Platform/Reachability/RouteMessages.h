#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace KestrioKit {

/// The content of one datagram of the kernel's response to a request for all routes (rtnetlink(7)).
struct RouteReply {
    /// The interface indexes of the default routes in this datagram. Routes that discard packets
    /// (blackhole, unreachable, prohibit, throw) are left out.
    std::vector<int> defaultLinks;
    /// Whether this is the last datagram of the response.
    bool finished = false;
    /// The kernel's `errno` value, EBADMSG if the datagram is malformed, or 0.
    int error = 0;
};

/// Parses a datagram. All lengths in it are checked, so malformed input is safe.
RouteReply parseRouteReply(std::span<const std::byte> datagram);

} // namespace KestrioKit
