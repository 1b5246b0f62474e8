#pragma once

// Included first: moc 6.4 fails on <compare> if no Qt header precedes it.
#include <QString>

#include <chrono>
#include <compare>

namespace KestrioKit {

/// A time on the monotonic clock, in nanoseconds. It is unrelated to the time of day.
struct DispatchTime {
    std::chrono::nanoseconds sinceReference{0};

    /// Returns a time that is never reached.
    static constexpr DispatchTime distantFuture() { return {std::chrono::nanoseconds::max()}; }
    friend constexpr auto operator<=>(DispatchTime, DispatchTime) = default;
};

/// Returns the time `seconds` later. Inline, because the core does not export it to front ends.
inline DispatchTime operator+(DispatchTime time, double seconds) {
    const auto delay = std::chrono::duration<double>(seconds);
    return {time.sinceReference + std::chrono::duration_cast<std::chrono::nanoseconds>(delay)};
}

/// Returns the time as printed in log lines: seconds on the monotonic clock.
QString printedForm(DispatchTime time);

/// The library's source of time. Thread-safe.
class Clock {
public:
    virtual ~Clock() = default;

    /// Returns the current time of a clock that only goes forward and stops while the machine
    /// sleeps.
    virtual DispatchTime now() const = 0;
    /// Returns the seconds since 1970-01-01 00:00 UTC. Follows every change of the system's clock.
    virtual double secondsSince1970() const = 0;

    /// Returns the system's clocks. The object is never destroyed.
    static const Clock &system();
};

} // namespace KestrioKit
