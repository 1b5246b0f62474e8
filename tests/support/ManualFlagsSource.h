#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"

#include <mutex>
#include <vector>

namespace KestrioKit {

/// A system whose network comes and goes as a test says. Thread-safe.
class ManualFlagsSource final : public ReachabilityFlagsSource {
public:
    explicit ManualFlagsSource(ReachabilityFlags flags = ReachabilityFlag::reachable)
        : m_flags(flags) {}

    /// From now on these are the flags; whoever listens is told, also when they are the same.
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
    /// From now on `setDispatchQueue` fails with that; without a value it succeeds.
    void failToStart(std::optional<ErrorCode> error) {
        const std::lock_guard guard(m_lock);
        m_error = error;
    }

    /// Another view of the same system, for another listener.
    std::shared_ptr<ReachabilityFlagsSource> view() {
        const std::lock_guard guard(m_lock);
        const auto view = std::make_shared<ManualFlagsSource>(m_flags);
        m_views.push_back(view);
        return view;
    }

    /// Whether changes reach anybody.
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
