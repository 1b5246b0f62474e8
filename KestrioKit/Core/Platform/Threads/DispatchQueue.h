#pragma once

#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <atomic>
#include <memory>

#include <QString>

namespace KestrioKit {

/// A block that can be called off until it has begun. Thread-safe.
class DispatchWorkItem {
public:
    explicit DispatchWorkItem(Block block) : m_block(std::move(block)) {}

    void cancel() { m_cancelled = true; }
    /// Runs the block unless it was called off.
    void perform() const {
        if (!m_cancelled)
            m_block();
    }

private:
    Block m_block;
    std::atomic<bool> m_cancelled = false;
};

/// Blocks that run one at a time, in the order in which they were submitted, on an executor's
/// thread. Every block therefore is a barrier. Blocks that wait outlive the queue. Thread-safe.
class DispatchQueue {
public:
    /// `executor` must outlive the queue and its blocks.
    DispatchQueue(QString label, Executor &executor);

    const QString &label() const { return m_label; }

    /// Submits `block` and returns at once.
    void async(Block block) const;
    /// Submits `item` once the executor's clock has reached `deadline`.
    void asyncAfter(DispatchTime deadline, std::shared_ptr<DispatchWorkItem> item) const;
    /// Runs the blocks that wait, then `block`, on the calling thread; waits only for a block of
    /// this queue that is being run. Not to be called from a block of the same queue.
    void sync(const Block &block) const;

    /// The application's event loop. Blocks submitted while there is no application object run once
    /// the event loop of the next one does.
    static const DispatchQueue &main();

private:
    struct State;

    QString m_label;
    Executor &m_executor;
    std::shared_ptr<State> m_state;
};

} // namespace KestrioKit
