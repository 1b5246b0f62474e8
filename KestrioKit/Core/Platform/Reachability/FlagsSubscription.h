#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"

namespace KestrioKit {

/// Who is told of the changes that a flags source sees, and on which queue. Thread-safe.
class FlagsSubscription {
public:
    void setCallback(ReachabilityFlagsSource::Callback callback);
    void setDispatchQueue(const DispatchQueue *queue);

    /// Has `read` called on the queue, and the callback with what it returned. Does nothing while
    /// there is no queue or no callback, and drops a reading that failed: the next change reads
    /// again.
    void announce(std::function<ReachabilityFlagsSource::Reading()> read) const;

private:
    Atomic<ReachabilityFlagsSource::Callback> m_callback;
    Atomic<std::shared_ptr<const DispatchQueue>> m_queue;
};

} // namespace KestrioKit
