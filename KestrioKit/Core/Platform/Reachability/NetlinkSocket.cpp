#include "KestrioKit/Core/Platform/Reachability/NetlinkSocket.h"

#include <array>
#include <cerrno>
#include <utility>

#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace KestrioKit {

namespace {

constexpr int noDescriptor = -1;

// Links and addresses are included because the kernel drops routes without a notification when a
// link goes down or an address is removed.
constexpr std::array newsGroups{RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV4_ROUTE,
                                RTNLGRP_IPV6_IFADDR, RTNLGRP_IPV6_ROUTE};

struct RoutesRequest {
    nlmsghdr header;
    rtmsg route;
};

} // namespace

std::variant<NetlinkSocket, int> NetlinkSocket::open() {
    const int descriptor =
        ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    if (descriptor < 0)
        return errno;
    NetlinkSocket socket(descriptor);
    // Without an address of its own, the socket counts as the kernel's and receives nothing.
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    if (::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) < 0)
        return errno;
    return socket;
}

NetlinkSocket::NetlinkSocket(NetlinkSocket &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, noDescriptor)) {}

NetlinkSocket::~NetlinkSocket() {
    if (m_descriptor != noDescriptor)
        ::close(m_descriptor);
}

std::optional<int> NetlinkSocket::setNewsWanted(bool wanted) const {
    const int option = wanted ? NETLINK_ADD_MEMBERSHIP : NETLINK_DROP_MEMBERSHIP;
    for (const int group : newsGroups) {
        if (::setsockopt(m_descriptor, SOL_NETLINK, option, &group, sizeof group) < 0)
            return errno;
    }
    return std::nullopt;
}

void NetlinkSocket::discardNews() const {
    std::byte cutOff{};
    // ENOBUFS reports lost notifications, which do no harm because the routes are read afterwards.
    while (::recv(m_descriptor, &cutOff, sizeof cutOff, 0) >= 0 || errno == ENOBUFS ||
           errno == EINTR) {
    }
}

std::optional<int> NetlinkSocket::requestRoutes() const {
    RoutesRequest request{};
    request.header.nlmsg_len = sizeof request;
    request.header.nlmsg_type = RTM_GETROUTE;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.route.rtm_family = AF_UNSPEC;
    if (::send(m_descriptor, &request, sizeof request, 0) < 0)
        return errno;
    return std::nullopt;
}

std::variant<std::span<const std::byte>, int>
NetlinkSocket::receive(std::span<std::byte> buffer) const {
    const ssize_t size = ::recv(m_descriptor, buffer.data(), buffer.size(), MSG_TRUNC);
    if (size < 0)
        return errno;
    if (std::size_t(size) > buffer.size())
        return EMSGSIZE;
    return std::span<const std::byte>(buffer.first(std::size_t(size)));
}

bool NetlinkSocket::isLinkLive(int index) const {
    ifreq request{};
    request.ifr_ifindex = index;
    if (::ioctl(m_descriptor, SIOCGIFNAME, &request) < 0 ||
        ::ioctl(m_descriptor, SIOCGIFFLAGS, &request) < 0)
        return false;
    constexpr int upAndRunning = IFF_UP | IFF_RUNNING;
    return (request.ifr_flags & (upAndRunning | IFF_LOOPBACK)) == upAndRunning;
}

} // namespace KestrioKit
