#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlags.h"
#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace KestrioKit {

/// Provides the flags for `Reachability`. The implementation reads the system. Tests may replace
/// it. Thread-safe.
class ReachabilityFlagsSource {
public:
    /// The system's error number (`errno` on Linux).
    using ErrorCode = int;
    /// The flags, or the reason why they could not be read.
    using Reading = std::variant<ReachabilityFlags, ErrorCode>;
    /// Receives the flags after a change. They may be the same as before.
    using Callback = std::function<void(ReachabilityFlags)>;
    /// The source, or the reason why it could not be created.
    using Creation = std::variant<std::shared_ptr<ReachabilityFlagsSource>, ErrorCode>;

    virtual ~ReachabilityFlagsSource() = default;

    /// Returns the current flags without blocking.
    virtual Reading flags() = 0;
    /// Sets the callback for changes. An empty callback clears it. A call that has already begun
    /// may still come after that. Returns an error on failure.
    virtual std::optional<ErrorCode> setCallback(Callback callback) = 0;
    /// Delivers changes on a copy of `queue`. A null pointer ends the delivery. Returns an error on
    /// failure.
    virtual std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *queue) = 0;

    /// Returns a source of the system's flags for `serviceHost`. A service on exactly "localhost"
    /// is always reachable. `executor` must run an event loop, use `clock` and outlive the source.
    static Creation system(Executor &executor, const Clock &clock, const QString &serviceHost);
};

} // namespace KestrioKit
