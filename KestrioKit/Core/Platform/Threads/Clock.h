#pragma once

// First: moc 6.4 stumbles over <compare> where nothing of Qt's comes before.
#include <QString>

#include <chrono>
#include <compare>

namespace KestrioKit {

/// A moment on the monotonic clock, in nanoseconds. It says nothing about the time of day.
struct DispatchTime {
    std::chrono::nanoseconds sinceReference{0};

    static constexpr DispatchTime distantFuture() { return {std::chrono::nanoseconds::max()}; }
    friend constexpr auto operator<=>(DispatchTime, DispatchTime) = default;
};

/// The moment `seconds` later.
DispatchTime operator+(DispatchTime time, double seconds);

/// The moment as it stands in log lines: seconds on the monotonic clock.
QString printedForm(DispatchTime time);

/// Where the library takes the time from. Thread-safe.
class Clock {
public:
    virtual ~Clock() = default;

    /// Now, on a clock that only goes forward and stops while the machine sleeps.
    virtual DispatchTime now() const = 0;
    /// Now, in seconds since 1970-01-01 00:00 UTC. Follows every change of the system's clock.
    virtual double secondsSince1970() const = 0;

    /// The machine's clocks; lives for the whole process.
    static const Clock &system();
};

} // namespace KestrioKit
