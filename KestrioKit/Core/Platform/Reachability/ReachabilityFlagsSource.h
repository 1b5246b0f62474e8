#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlags.h"
#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace KestrioKit {

/// Where `Reachability` takes the flags from: the system, or a test in its place. Thread-safe.
class ReachabilityFlagsSource {
public:
    /// The system's error number: an `errno` value on Linux.
    using ErrorCode = int;
    using Reading = std::variant<ReachabilityFlags, ErrorCode>;
    /// Is given the flags after something has changed; they may be the same as before.
    using Callback = std::function<void(ReachabilityFlags)>;
    using Creation = std::variant<std::shared_ptr<ReachabilityFlagsSource>, ErrorCode>;

    virtual ~ReachabilityFlagsSource() = default;

    /// The flags now. Does not wait for anything.
    virtual Reading flags() = 0;
    /// Sets what is told of changes; an empty callback clears it. A call that is already under way
    /// when it is cleared may still come.
    virtual std::optional<ErrorCode> setCallback(Callback callback) = 0;
    /// Has changes delivered on (a copy of) `queue`; nullptr ends the delivery.
    virtual std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *queue) = 0;

    /// The system's flags for the way to `serviceHost`. A service on exactly "localhost" is always
    /// reachable. `executor`, which runs an event loop and goes by `clock`, outlives the source.
    static Creation system(Executor &executor, const Clock &clock, const QString &serviceHost);
};

} // namespace KestrioKit
