#pragma once

#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Platform/Threads/Clock.h"

namespace KestrioKit {

/// A clock that stands still until it is advanced. Timed blocks of an executor see the new time
/// when it wakes: `executor.post([] {})`. Thread-safe.
class ManualClock final : public Clock {
public:
    DispatchTime now() const override { return m_now.value(); }
    double secondsSince1970() const override {
        constexpr double start = 1'700'000'000;
        return start + std::chrono::duration<double>(now().sinceReference).count();
    }

    void advance(double seconds) {
        m_now.mutate([seconds](DispatchTime &now) { now = now + seconds; });
    }

private:
    Atomic<DispatchTime> m_now;
};

} // namespace KestrioKit
