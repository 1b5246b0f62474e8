#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"

#include <functional>

namespace KestrioKit {

/// A piece of work for an executor. It is called once.
using Block = std::function<void()>;

/// Runs blocks one after another, in the order in which they were posted.
class SerialExecutor {
public:
    virtual ~SerialExecutor() = default;

    /// Runs `block` later, never within this call. Thread-safe.
    virtual void post(Block block) = 0;
};

/// An executor that can also run blocks at a given time.
class Executor : public SerialExecutor {
public:
    /// Runs `block` once the clock has reached `deadline`. Thread-safe.
    virtual void postAt(DispatchTime deadline, Block block) = 0;
};

} // namespace KestrioKit
