#pragma once

#include <mutex>
#include <utility>

namespace KestrioKit {

/// A value that several threads read and write: each access holds the lock for just that access.
template <typename Value>
class Atomic {
public:
    Atomic() = default;
    explicit Atomic(Value value) : m_value(std::move(value)) {}

    Value value() const {
        const std::lock_guard guard(m_lock);
        return m_value;
    }

    void setValue(Value value) {
        const std::lock_guard guard(m_lock);
        // The old value is destroyed by the argument, after the lock is gone.
        std::swap(m_value, value);
    }

    /// Runs `change(Value &)` under the lock and returns what it returns. It must not use this
    /// object.
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
