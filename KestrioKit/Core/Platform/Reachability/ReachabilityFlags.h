#pragma once

#include <QFlags>

namespace KestrioKit {

/// What the system says about the way to the network. Names and values are those of
/// `SCNetworkReachabilityFlags`.
enum class ReachabilityFlag : quint32 {
    transientConnection = 0x1,
    reachable = 0x2,
    /// A connection must be set up first.
    connectionRequired = 0x4,
    /// Traffic sets the connection up.
    connectionOnTraffic = 0x8,
    /// Setting the connection up takes the user.
    interventionRequired = 0x10,
    connectionOnDemand = 0x20,
    isLocalAddress = 0x10000,
    isDirect = 0x20000,
    /// Over a cellular network.
    isWWAN = 0x40000,
};
Q_DECLARE_FLAGS(ReachabilityFlags, ReachabilityFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(ReachabilityFlags)

} // namespace KestrioKit
