#pragma once

#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"

#include <chrono>
#include <memory>

namespace KestrioKit {

/// A thread that is there while it has blocks to run, and a moment longer. It needs no application
/// object, and what waits is done before the one that there is ends.
class TransientThread final : public SerialExecutor {
public:
    TransientThread();

    void post(Block block) override;

    /// How long the thread waits for another block.
    static constexpr std::chrono::seconds idleLimit{1};
    /// How long the end of the application waits for the blocks that are left.
    static constexpr std::chrono::seconds stopLimit{5};

private:
    struct State;

    std::shared_ptr<State> m_state;
    ApplicationLifecycle::Observation m_applicationTerminated;
};

} // namespace KestrioKit
