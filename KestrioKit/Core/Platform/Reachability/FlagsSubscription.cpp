#include "KestrioKit/Core/Platform/Reachability/FlagsSubscription.h"

namespace KestrioKit {

void FlagsSubscription::setCallback(ReachabilityFlagsSource::Callback callback) {
    m_callback.setValue(std::move(callback));
}

void FlagsSubscription::setDispatchQueue(const DispatchQueue *queue) {
    m_queue.setValue(queue ? std::make_shared<const DispatchQueue>(*queue) : nullptr);
}

void FlagsSubscription::announce(std::function<ReachabilityFlagsSource::Reading()> read) const {
    const ReachabilityFlagsSource::Callback callback = m_callback.value();
    const std::shared_ptr<const DispatchQueue> queue = m_queue.value();
    if (!callback || !queue)
        return;
    // Reading on the queue keeps readings and deliveries in the same order.
    queue->async([callback, read = std::move(read)] {
        const ReachabilityFlagsSource::Reading reading = read();
        if (const auto *flags = std::get_if<ReachabilityFlags>(&reading))
            callback(*flags);
    });
}

} // namespace KestrioKit
