#pragma once

#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Platform/Threads/Clock.h"

namespace KestrioKit {

/// A clock that stands still until it is advanced. An executor does not notice the change by
/// itself. Wake it with `executor.post([] {})`, and timed blocks that are due run. Thread-safe.
class ManualClock final : public Clock {
public:
    DispatchTime now() const override { return m_now.value(); }
    double secondsSince1970() const override {
        constexpr double start = 1'700'000'000;
        return start + std::chrono::duration<double>(now().sinceReference).count();
    }

    /// Moves the clock forward; both readings change by `seconds`.
    void advance(double seconds) {
        m_now.mutate([seconds](DispatchTime &now) { now = now + seconds; });
    }

private:
    Atomic<DispatchTime> m_now;
};

} // namespace KestrioKit
