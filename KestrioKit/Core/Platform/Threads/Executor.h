#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"

#include <functional>

namespace KestrioKit {

using Block = std::function<void()>;

/// A thread that runs blocks one after another, in the order in which they were posted.
class SerialExecutor {
public:
    virtual ~SerialExecutor() = default;

    /// Has `block` run later, never within this call. Thread-safe.
    virtual void post(Block block) = 0;
};

/// One that can also wait.
class Executor : public SerialExecutor {
public:
    /// Has `block` run as soon as the clock has reached `deadline`. Thread-safe.
    virtual void postAt(DispatchTime deadline, Block block) = 0;
};

} // namespace KestrioKit
