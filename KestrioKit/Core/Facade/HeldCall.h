#pragma once

#include "KestrioKit/Core/Platform/Threads/Executor.h"

namespace KestrioKit {

/// A public call that was made too early.
struct HeldCall {
    enum class Kind {
        /// An event without a handler, which can be queued as a record.
        event,
        /// A change of attributes, which can be queued as a record.
        attributes,
        /// A logout. Later calls concern another visitor.
        logout,
        other,
    };

    Kind kind = Kind::other;
    /// Repeats the call.
    Block call;
    /// Queues the record of an event or a change of attributes.
    Block record = {};
    /// Tells the host that the call was dropped; empty if nobody waits for that.
    Block dropped = {};

    /// Returns whether the call can be queued as a record.
    bool hasRecord() const { return kind == Kind::event || kind == Kind::attributes; }
};

} // namespace KestrioKit
