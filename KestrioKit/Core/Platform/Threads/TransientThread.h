#pragma once

#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"

#include <chrono>
#include <memory>

namespace KestrioKit {

/// Runs blocks on a thread that exists only while there are blocks to run, and for `idleLimit`
/// afterwards. It needs no application object. When the application ends, the waiting blocks are
/// finished first.
class TransientThread final : public SerialExecutor {
public:
    TransientThread();

    void post(Block block) override;

    /// How long the idle thread waits for another block before it ends.
    static constexpr std::chrono::seconds idleLimit{1};
    /// The maximum time for which the end of the application waits for the remaining blocks.
    static constexpr std::chrono::seconds stopLimit{5};

private:
    struct State;

    std::shared_ptr<State> m_state;
    ApplicationLifecycle::Observation m_applicationTerminated;
};

} // namespace KestrioKit
