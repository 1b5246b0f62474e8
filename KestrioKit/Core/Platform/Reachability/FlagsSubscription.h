#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"

namespace KestrioKit {

/// The callback of a flags source and the queue on which it is called. Thread-safe.
class FlagsSubscription {
public:
    /// Sets the callback. An empty one ends the subscription.
    void setCallback(ReachabilityFlagsSource::Callback callback);
    /// Sets the queue, of which a copy is kept. A null pointer ends the subscription.
    void setDispatchQueue(const DispatchQueue *queue);

    /// Calls `read` on the queue and passes the result to the callback. Does nothing without a
    /// queue or a callback. A failed reading is dropped, since the next change reads again.
    void announce(std::function<ReachabilityFlagsSource::Reading()> read) const;

private:
    Atomic<ReachabilityFlagsSource::Callback> m_callback;
    Atomic<std::shared_ptr<const DispatchQueue>> m_queue;
};

} // namespace KestrioKit
