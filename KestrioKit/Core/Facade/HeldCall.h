#pragma once

#include "KestrioKit/Core/Platform/Threads/Executor.h"

namespace KestrioKit {

/// A public call that was made too early.
struct HeldCall {
    enum class Kind {
        /// An event without a handler, or a change of attributes: what can be queued as a record.
        event,
        attributes,
        /// Later calls concern another visitor.
        logout,
        other,
    };

    Kind kind = Kind::other;
    /// Makes it again.
    Block call;
    /// Queues the record of an event or a change of attributes.
    Block record = {};
    /// Tells the host that it was dropped; empty when nobody waits for that.
    Block dropped = {};

    bool hasRecord() const { return kind == Kind::event || kind == Kind::attributes; }
};

} // namespace KestrioKit
