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
/// Blocks posted while no thread is attached wait until one is. Blocks are handed over under a
/// mutex, and only a wake-up is posted as a Qt event. This is cheap for the caller and visible to
/// the thread sanitizer. Unless stated otherwise, functions are thread-safe.
class EventLoopExecutor final : public Executor {
public:
    /// `clock` decides when timed blocks are due. It must outlive this object.
    explicit EventLoopExecutor(const Clock &clock);
    ~EventLoopExecutor() override;

    /// Runs blocks in `thread` from now on. To be called once, and again only after `detach()`.
    void attach(QThread *thread);
    /// Lets blocks wait again. To be called on the attached thread. Happens automatically when that
    /// thread ends.
    void detach();

    void post(Block block) override;
    void postAt(DispatchTime deadline, Block block) override;

private:
    class Receiver;

    /// Posts a wake-up to the attached thread unless one is already posted.
    void wake();
    void runBlocks();
    void runDueBlocks();
    std::optional<Block> takeBlock();
    std::optional<Block> takeDueBlock();
    std::optional<DispatchTime> nextDeadline() const;

    const Clock &m_clock;
    mutable std::mutex m_lock;
    /// The members from here on are guarded by `m_lock`.
    std::deque<Block> m_blocks;
    std::multimap<DispatchTime, Block> m_timedBlocks;
    std::unique_ptr<Receiver> m_receiver;
    bool m_wakePosted = false;
};

} // namespace KestrioKit
