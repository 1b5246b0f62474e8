#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"

#include <functional>
#include <optional>

namespace KestrioKit {

/// Returns the seconds to wait before the next attempt, given the number of failures so far.
using Backoff = std::function<double(qint64 attempts)>;

/// The default back-off: 0, 5, 10, 30, 60, 120, 300 and 600 seconds for 0 to 7 failures, and 600
/// seconds for more.
double KestrioRetryStrategyDefaultBackoff(qint64 attempts);

/// Decides how often and when a task is sent. All copies of the task share this object. Only used
/// on the library's thread.
class KestrioRetryStrategy {
public:
    /// The default maximum number of attempts, including the first.
    static constexpr qint64 defaultAttemptLimit = 5;

    /// `clock` must outlive this object.
    explicit KestrioRetryStrategy(const Clock &clock, qint64 attemptLimit = defaultAttemptLimit,
                                  Backoff backoff = KestrioRetryStrategyDefaultBackoff);

    /// Returns the number of failed attempts.
    qint64 attempts() const { return m_attempts; }
    /// Returns the time of the last failure, or nothing before the first one.
    std::optional<DispatchTime> lastFailure() const { return m_lastFailure; }

    /// Returns whether the task may be sent once more.
    bool canRetry() const;
    /// Records a failed attempt at the current time.
    void failure();
    /// Returns when the task may be sent next, or nothing if it may not. For a task that has not
    /// failed, this is the current time: read `nextAttempt()` before `Clock::now()` when comparing
    /// the two.
    std::optional<DispatchTime> nextAttempt() const;
    /// Permanently prevents further attempts.
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
