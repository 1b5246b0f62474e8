#include "KestrioKit/Core/Queue/KestrioRetryStrategy.h"

#include <array>
#include <limits>

namespace KestrioKit {

namespace {

constexpr std::array<double, 8> backoffSeconds{0, 5, 10, 30, 60, 120, 300, 600};
constexpr double longestBackoffSeconds = 600;

} // namespace

double KestrioRetryStrategyDefaultBackoff(qint64 attempts) {
    const auto row = std::size_t(attempts);
    return row < backoffSeconds.size() ? backoffSeconds[row] : longestBackoffSeconds;
}

KestrioRetryStrategy::KestrioRetryStrategy(const Clock &clock, qint64 attemptLimit, Backoff backoff)
    : m_clock(clock), m_attemptLimit(attemptLimit), m_backoff(std::move(backoff)) {}

bool KestrioRetryStrategy::canRetry() const {
    return !m_invalidated && m_attempts < m_attemptLimit;
}

void KestrioRetryStrategy::failure() {
    m_lastFailure = m_clock.now();
    if (m_attempts == std::numeric_limits<qint64>::max())
        qFatal("KestrioRetryStrategy: more failures than can be counted");
    ++m_attempts;
}

std::optional<DispatchTime> KestrioRetryStrategy::nextAttempt() const {
    if (!canRetry())
        return std::nullopt;
    return m_lastFailure ? *m_lastFailure + m_backoff(m_attempts) : m_clock.now();
}

} // namespace KestrioKit
