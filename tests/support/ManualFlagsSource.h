#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"

#include <mutex>
#include <vector>

namespace KestrioKit {

/// A source of network flags that the test sets. Thread-safe.
class ManualFlagsSource final : public ReachabilityFlagsSource {
public:
    explicit ManualFlagsSource(ReachabilityFlags flags = ReachabilityFlag::reachable)
        : m_flags(flags) {}

    /// Sets the flags and notifies every listener, even if the flags are the same.
    void change(ReachabilityFlags flags) {
        const std::lock_guard guard(m_lock);
        m_flags = flags;
        if (m_callback && m_queue)
            m_queue->async([callback = m_callback, flags] { callback(flags); });
        for (const auto &known : m_views) {
            if (const auto view = known.lock())
                view->change(flags);
        }
    }
    /// Makes `setDispatchQueue` fail with this error from now on; without a value it succeeds.
    void failToStart(std::optional<ErrorCode> error) {
        const std::lock_guard guard(m_lock);
        m_error = error;
    }

    /// Returns another source of the same flags, for another listener. `change()` reaches it, too.
    std::shared_ptr<ReachabilityFlagsSource> view() {
        const std::lock_guard guard(m_lock);
        const auto view = std::make_shared<ManualFlagsSource>(m_flags);
        m_views.push_back(view);
        return view;
    }

    /// Returns whether a callback and a queue are set, so that changes are delivered.
    bool isListenedTo() const {
        const std::lock_guard guard(m_lock);
        return m_callback && m_queue;
    }

    Reading flags() override {
        const std::lock_guard guard(m_lock);
        return m_flags;
    }
    std::optional<ErrorCode> setCallback(Callback callback) override {
        const std::lock_guard guard(m_lock);
        m_callback = std::move(callback);
        return std::nullopt;
    }
    std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *queue) override {
        const std::lock_guard guard(m_lock);
        if (queue && m_error)
            return m_error;
        m_queue = queue ? std::make_shared<const DispatchQueue>(*queue) : nullptr;
        return std::nullopt;
    }

private:
    mutable std::mutex m_lock;
    ReachabilityFlags m_flags;
    std::optional<ErrorCode> m_error;
    Callback m_callback;
    std::shared_ptr<const DispatchQueue> m_queue;
    std::vector<std::weak_ptr<ManualFlagsSource>> m_views;
};

} // namespace KestrioKit
