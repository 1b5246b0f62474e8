#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace KestrioKit {

/// What one datagram of the kernel's answer to a request for all routes says (rtnetlink(7)).
struct RouteReply {
    /// The links, by interface index, over which this datagram's default routes lead. Routes that
    /// throw packets away (blackhole, unreachable, prohibit, throw) are not among them.
    std::vector<int> defaultLinks;
    /// Whether nothing follows.
    bool finished = false;
    /// The kernel's `errno` value, or EBADMSG for a datagram that cannot be read; 0 for none.
    int error = 0;
};

/// Reads a datagram; trusts none of the lengths in it.
RouteReply parseRouteReply(std::span<const std::byte> datagram);

} // namespace KestrioKit
