#pragma once

#include "KestrioKit/Core/Platform/Error.h"

#include <QString>

namespace KestrioKit {

/// The reason why the network cannot be watched.
struct ReachabilityError {
    enum class Reason {
        failedToCreateWithAddress,
        failedToCreateWithHostname,
        unableToSetCallback,
        unableToSetDispatchQueue,
        unableToGetFlags,
    };

    Reason reason = Reason::failedToCreateWithAddress;
    /// The system's error number (`errno` on Linux).
    int code = 0;
    /// The address or host name to watch. Empty for the last three reasons.
    QString target;

    /// Returns this as a general error of `reachabilityErrorDomain`.
    Error toError() const;

    friend bool operator==(const ReachabilityError &, const ReachabilityError &) = default;
};

/// The domain of these errors. The code is a `ReachabilityError::Reason`.
inline constexpr QLatin1StringView reachabilityErrorDomain("KestrioKit.ReachabilityError");

} // namespace KestrioKit
