#pragma once

#include <mutex>
#include <utility>

namespace KestrioKit {

/// A value that several threads read and write. Each access holds a lock. Thread-safe.
template <typename Value>
class Atomic {
public:
    Atomic() = default;
    explicit Atomic(Value value) : m_value(std::move(value)) {}

    /// Returns a copy of the value.
    Value value() const {
        const std::lock_guard guard(m_lock);
        return m_value;
    }

    /// Replaces the value. The old value is destroyed after the lock is released.
    void setValue(Value value) {
        const std::lock_guard guard(m_lock);
        std::swap(m_value, value);
    }

    /// Calls `change(Value &)` while holding the lock and returns its result. `change` must not use
    /// this object.
    template <typename Change>
    auto mutate(Change &&change) {
        const std::lock_guard guard(m_lock);
        return change(m_value);
    }

private:
    mutable std::mutex m_lock;
    Value m_value{};
};

} // namespace KestrioKit
