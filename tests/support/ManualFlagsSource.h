#pragma once

#include "KestrioKit/Platform/ReachabilityFlagsSource.h"

#include <mutex>
#include <vector>

namespace KestrioKit {

/// A system whose network comes and goes as a test says. Thread-safe.
class ManualFlagsSource final : public ReachabilityFlagsSource {
public:
    /// What the operations fail with; without a value they succeed.
    struct Errors {
        std::optional<ErrorCode> flags = std::nullopt;
        std::optional<ErrorCode> setCallback = std::nullopt;
        std::optional<ErrorCode> setDispatchQueue = std::nullopt;
    };

    explicit ManualFlagsSource(ReachabilityFlags flags = ReachabilityFlag::reachable)
        : m_flags(flags) {}

    /// From now on these are the flags; whoever listens is told, also when they are the same.
    void change(ReachabilityFlags flags);
    void fail(Errors errors);

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
    Errors m_errors;
    Callback m_callback;
    std::shared_ptr<const DispatchQueue> m_queue;
    std::vector<std::weak_ptr<ManualFlagsSource>> m_views;
};

} // namespace KestrioKit
