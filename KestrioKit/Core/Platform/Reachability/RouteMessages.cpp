#include "KestrioKit/Core/Platform/Reachability/RouteMessages.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace KestrioKit {

namespace {

using Bytes = std::span<const std::byte>;

template <typename Value>
std::optional<Value> takeValue(Bytes &bytes) {
    if (bytes.size() < sizeof(Value))
        return std::nullopt;
    Value value;
    std::memcpy(&value, bytes.data(), sizeof value);
    bytes = bytes.subspan(sizeof value);
    return value;
}

template <typename Header>
struct Record {
    Header header;
    Bytes payload;
};

/// Removes and returns the first of several records, each of which begins with its own length.
/// Returns nothing at the end and for an invalid length. `length` is the header's member for the
/// length.
template <auto length, typename Header>
std::optional<Record<Header>> takeRecord(Bytes &bytes) {
    Bytes rest = bytes;
    const std::optional<Header> header = takeValue<Header>(rest);
    if (!header)
        return std::nullopt;
    const std::size_t size = (*header).*length;
    if (size < sizeof(Header) || size > bytes.size())
        return std::nullopt;
    const Record<Header> record{*header, rest.first(size - sizeof(Header))};
    // Netlink aligns records to four bytes. The last one may lack its padding.
    bytes = bytes.subspan(std::min<std::size_t>(NLMSG_ALIGN(size), bytes.size()));
    return record;
}

std::optional<Record<nlmsghdr>> takeMessage(Bytes &bytes) {
    return takeRecord<&nlmsghdr::nlmsg_len, nlmsghdr>(bytes);
}

std::optional<Record<rtattr>> takeAttribute(Bytes &bytes) {
    return takeRecord<&rtattr::rta_len, rtattr>(bytes);
}

std::optional<Record<rtnexthop>> takeNextHop(Bytes &bytes) {
    return takeRecord<&rtnexthop::rtnh_len, rtnexthop>(bytes);
}

void addLinks(const Record<rtattr> &attribute, std::vector<int> &links) {
    Bytes payload = attribute.payload;
    if (attribute.header.rta_type == RTA_OIF) {
        if (const std::optional<int> link = takeValue<int>(payload))
            links.push_back(*link);
    } else if (attribute.header.rta_type == RTA_MULTIPATH) {
        while (const std::optional<Record<rtnexthop>> hop = takeNextHop(payload))
            links.push_back(hop->header.rtnh_ifindex);
    }
}

void addDefaultRoute(Bytes message, std::vector<int> &links) {
    const std::optional<rtmsg> route = takeValue<rtmsg>(message);
    if (!route || route->rtm_dst_len != 0 || route->rtm_type != RTN_UNICAST)
        return;
    while (const std::optional<Record<rtattr>> attribute = takeAttribute(message))
        addLinks(*attribute, links);
}

/// Returns the error with which a message of type "done" or "error" begins. The kernel negates it.
int errorOf(Bytes message) {
    return -takeValue<int>(message).value_or(0);
}

void read(const Record<nlmsghdr> &message, RouteReply &reply) {
    switch (message.header.nlmsg_type) {
    case RTM_NEWROUTE:
        addDefaultRoute(message.payload, reply.defaultLinks);
        break;
    case NLMSG_DONE:
    case NLMSG_ERROR:
        reply.finished = true;
        reply.error = errorOf(message.payload);
        break;
    default:
        break;
    }
}

} // namespace

RouteReply parseRouteReply(std::span<const std::byte> datagram) {
    RouteReply reply;
    while (!datagram.empty() && !reply.finished) {
        const std::optional<Record<nlmsghdr>> message = takeMessage(datagram);
        if (!message) {
            reply.error = EBADMSG;
            break;
        }
        read(*message, reply);
    }
    return reply;
}

} // namespace KestrioKit
