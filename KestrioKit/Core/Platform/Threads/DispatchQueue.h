#pragma once

#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <atomic>
#include <memory>

#include <QString>

namespace KestrioKit {

/// A block that can be cancelled until it begins to run. Thread-safe.
class DispatchWorkItem {
public:
    explicit DispatchWorkItem(Block block) : m_block(std::move(block)) {}

    /// Prevents the block from running. A block that is already running continues.
    void cancel() { m_cancelled = true; }
    /// Runs the block unless it was cancelled.
    void perform() const {
        if (!m_cancelled)
            m_block();
    }

private:
    Block m_block;
    std::atomic<bool> m_cancelled = false;
};

/// Runs blocks one at a time on an executor's thread, in the order of submission. Waiting blocks
/// run even if the queue has been destroyed. Thread-safe.
class DispatchQueue {
public:
    /// `label` names the queue. `executor` must outlive the queue and its blocks.
    DispatchQueue(QString label, Executor &executor);

    const QString &label() const { return m_label; }

    /// Submits `block` and returns immediately.
    void async(Block block) const;
    /// Submits `item` when the executor's clock has reached `deadline`.
    void asyncAfter(DispatchTime deadline, std::shared_ptr<DispatchWorkItem> item) const;
    /// Runs all waiting blocks, then `block`, on the calling thread. Waits only while another
    /// thread runs a block of this queue. Must not be called from a block of the same queue.
    void sync(const Block &block) const;

    /// Returns the queue of the application's event loop. Blocks submitted without an application
    /// object run in the event loop of the next one.
    static const DispatchQueue &main();

private:
    struct State;

    QString m_label;
    Executor &m_executor;
    std::shared_ptr<State> m_state;
};

} // namespace KestrioKit
