#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <variant>

namespace KestrioKit {

/// A socket to the kernel's routing tables (rtnetlink(7)). No function blocks, and the descriptor
/// is closed on exec. Errors are `errno` values. Thread-safe, except for moving.
class NetlinkSocket {
public:
    /// Returns a new socket, or the error.
    static std::variant<NetlinkSocket, int> open();

    NetlinkSocket(NetlinkSocket &&other) noexcept;
    NetlinkSocket &operator=(NetlinkSocket &&) = delete;
    ~NetlinkSocket();

    /// Returns the file descriptor, which the socket owns.
    int descriptor() const { return m_descriptor; }

    /// Starts or stops receiving notifications about links, addresses and routes.
    std::optional<int> setNewsWanted(bool wanted) const;
    /// Discards the notifications that have arrived.
    void discardNews() const;

    /// Requests all routes of all families and tables. `receive()` then returns the response.
    std::optional<int> requestRoutes() const;
    /// Reads the next datagram into `buffer` and returns the used part of it, or the error: EAGAIN
    /// if there is no datagram, EMSGSIZE if it does not fit.
    std::variant<std::span<const std::byte>, int> receive(std::span<std::byte> buffer) const;

    /// Returns whether packets can leave the machine over the interface with this index.
    bool isLinkLive(int index) const;

private:
    explicit NetlinkSocket(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace KestrioKit
