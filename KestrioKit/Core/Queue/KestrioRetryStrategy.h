#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"

#include <functional>
#include <optional>

namespace KestrioKit {

/// Seconds to wait before the next send, by the number of failures so far.
using Backoff = std::function<double(qint64 attempts)>;

/// 0, 5, 10, 30, 60, 120, 300 and 600 seconds for 0 to 7 failures, 600 for more.
double KestrioRetryStrategyDefaultBackoff(qint64 attempts);

/// How often and when one task may be sent again. Shared by every copy of its task; used on the
/// queue's thread alone.
class KestrioRetryStrategy {
public:
    static constexpr qint64 defaultAttemptLimit = 5;

    /// `clock` must outlive this object.
    explicit KestrioRetryStrategy(const Clock &clock, qint64 attemptLimit = defaultAttemptLimit,
                                  Backoff backoff = KestrioRetryStrategyDefaultBackoff);

    qint64 attempts() const { return m_attempts; }
    std::optional<DispatchTime> lastFailure() const { return m_lastFailure; }

    /// Whether the task may be sent once more.
    bool canRetry() const;
    /// Records that a send has failed now.
    void failure();
    /// When the task may be sent next; absent when it may not.
    std::optional<DispatchTime> nextAttempt() const;
    /// Rules out every further send, for good.
    void invalidate() { m_invalidated = true; }

private:
    const Clock &m_clock;
    qint64 m_attemptLimit;
    qint64 m_attempts = 0;
    std::optional<DispatchTime> m_lastFailure;
    Backoff m_backoff;
    bool m_invalidated = false;
};

} // namespace KestrioKit
