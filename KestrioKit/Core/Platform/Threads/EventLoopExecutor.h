#pragma once

#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

class QObject;
class QThread;

namespace KestrioKit {

/// Runs blocks in the event loop of a Qt thread.
///
/// Blocks posted while no thread is attached wait for one. They change hands under a mutex, and
/// only a wake-up travels as a Qt event: cheap for the caller, and visible to the thread sanitizer.
class EventLoopExecutor final : public Executor {
public:
    /// `clock` says when timed blocks are due; it must outlive this object.
    explicit EventLoopExecutor(const Clock &clock);
    ~EventLoopExecutor() override;

    /// From now on blocks run in `thread`. To be called once, or again after `detach()`.
    void attach(QThread *thread);
    /// Blocks wait again. To be called on the attached thread; when that ends, this happens anyway.
    void detach();

    void post(Block block) override;
    void postAt(DispatchTime deadline, Block block) override;

private:
    class Receiver;

    void wake();
    void runBlocks();
    void runDueBlocks();
    std::optional<Block> takeBlock();
    std::optional<Block> takeDueBlock();
    std::optional<DispatchTime> nextDeadline() const;

    const Clock &m_clock;
    mutable std::mutex m_lock;
    std::deque<Block> m_blocks;
    std::multimap<DispatchTime, Block> m_timedBlocks;
    std::unique_ptr<Receiver> m_receiver;
    bool m_wakePosted = false;
};

} // namespace KestrioKit
