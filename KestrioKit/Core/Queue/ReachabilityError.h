#pragma once

#include "KestrioKit/Core/Platform/Error.h"

#include <QString>

namespace KestrioKit {

/// Why the network is not being watched.
struct ReachabilityError {
    enum class Reason {
        failedToCreateWithAddress,
        failedToCreateWithHostname,
        unableToSetCallback,
        unableToSetDispatchQueue,
        unableToGetFlags,
    };

    Reason reason = Reason::failedToCreateWithAddress;
    /// The system's error number.
    int code = 0;
    /// The address or host name that was to be watched; empty for the last three reasons.
    QString target;

    /// The same as a general error; its code is the reason.
    Error toError() const;

    friend bool operator==(const ReachabilityError &, const ReachabilityError &) = default;
};

/// The code is a `ReachabilityError::Reason`.
inline constexpr QLatin1StringView reachabilityErrorDomain("KestrioKit.ReachabilityError");

} // namespace KestrioKit
