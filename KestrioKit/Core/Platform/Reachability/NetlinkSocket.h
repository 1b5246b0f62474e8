#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <variant>

namespace KestrioKit {

/// A socket to the kernel's routing tables (rtnetlink(7)). No call of it waits, and the descriptor
/// is closed on exec. Errors are `errno` values. Thread-safe, except for moving.
class NetlinkSocket {
public:
    static std::variant<NetlinkSocket, int> open();

    NetlinkSocket(NetlinkSocket &&other) noexcept;
    NetlinkSocket &operator=(NetlinkSocket &&) = delete;
    ~NetlinkSocket();

    int descriptor() const { return m_descriptor; }

    /// Subscribes to the news of links, addresses and routes, or ends that.
    std::optional<int> setNewsWanted(bool wanted) const;
    /// Throws away what has arrived.
    void discardNews() const;

    /// Asks for all routes of all families and tables; `receive()` then gives the answer.
    std::optional<int> requestRoutes() const;
    /// The next datagram, in `buffer`, or the error: EAGAIN when there is none, EMSGSIZE when it
    /// does not fit.
    std::variant<std::span<const std::byte>, int> receive(std::span<std::byte> buffer) const;

    /// Whether packets can leave the machine over the link of that interface index.
    bool isLinkLive(int index) const;

private:
    explicit NetlinkSocket(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace KestrioKit
