#include "tests/support/ManualFlagsSource.h"

namespace KestrioKit {

void ManualFlagsSource::change(ReachabilityFlags flags) {
    const std::lock_guard guard(m_lock);
    m_flags = flags;
    if (m_callback && m_queue)
        m_queue->async([callback = m_callback, flags] { callback(flags); });
    for (const auto &known : m_views) {
        if (const auto view = known.lock())
            view->change(flags);
    }
}

std::shared_ptr<ReachabilityFlagsSource> ManualFlagsSource::view() {
    const std::lock_guard guard(m_lock);
    const auto view = std::make_shared<ManualFlagsSource>(m_flags);
    m_views.push_back(view);
    return view;
}

void ManualFlagsSource::failToStart(std::optional<ErrorCode> error) {
    const std::lock_guard guard(m_lock);
    m_error = error;
}

bool ManualFlagsSource::isListenedTo() const {
    const std::lock_guard guard(m_lock);
    return m_callback && m_queue;
}

ReachabilityFlagsSource::Reading ManualFlagsSource::flags() {
    const std::lock_guard guard(m_lock);
    return m_flags;
}

std::optional<ReachabilityFlagsSource::ErrorCode>
ManualFlagsSource::setCallback(Callback callback) {
    const std::lock_guard guard(m_lock);
    m_callback = std::move(callback);
    return std::nullopt;
}

std::optional<ReachabilityFlagsSource::ErrorCode>
ManualFlagsSource::setDispatchQueue(const DispatchQueue *queue) {
    const std::lock_guard guard(m_lock);
    if (queue && m_error)
        return m_error;
    m_queue = queue ? std::make_shared<const DispatchQueue>(*queue) : nullptr;
    return std::nullopt;
}

} // namespace KestrioKit
