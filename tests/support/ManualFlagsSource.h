#pragma once

#include "KestrioKit/Platform/ReachabilityFlagsSource.h"

#include <mutex>
#include <vector>

namespace KestrioKit {

/// A system whose network comes and goes as a test says. Thread-safe.
class ManualFlagsSource final : public ReachabilityFlagsSource {
public:
    explicit ManualFlagsSource(ReachabilityFlags flags = ReachabilityFlag::reachable)
        : m_flags(flags) {}

    /// From now on these are the flags; whoever listens is told, also when they are the same.
    void change(ReachabilityFlags flags);
    /// From now on `setDispatchQueue` fails with that; without a value it succeeds.
    void failToStart(std::optional<ErrorCode> error);

    /// Another view of the same system, for another listener.
    std::shared_ptr<ReachabilityFlagsSource> view();

    /// Whether changes reach anybody.
    bool isListenedTo() const;

    Reading flags() override;
    std::optional<ErrorCode> setCallback(Callback callback) override;
    std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *queue) override;

private:
    mutable std::mutex m_lock;
    ReachabilityFlags m_flags;
    std::optional<ErrorCode> m_error;
    Callback m_callback;
    std::shared_ptr<const DispatchQueue> m_queue;
    std::vector<std::weak_ptr<ManualFlagsSource>> m_views;
};

} // namespace KestrioKit
