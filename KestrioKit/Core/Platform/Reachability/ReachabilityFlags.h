#pragma once

#include <QFlags>

namespace KestrioKit {

/// The system's description of the connection to the network. Names and values are those of
/// `SCNetworkReachabilityFlags`.
enum class ReachabilityFlag : quint32 {
    transientConnection = 0x1,
    reachable = 0x2,
    /// A connection must be established first.
    connectionRequired = 0x4,
    /// Traffic establishes the connection.
    connectionOnTraffic = 0x8,
    /// The user must help to establish the connection.
    interventionRequired = 0x10,
    connectionOnDemand = 0x20,
    isLocalAddress = 0x10000,
    isDirect = 0x20000,
    /// The connection uses a cellular network.
    isWWAN = 0x40000,
};
Q_DECLARE_FLAGS(ReachabilityFlags, ReachabilityFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(ReachabilityFlags)

} // namespace KestrioKit
