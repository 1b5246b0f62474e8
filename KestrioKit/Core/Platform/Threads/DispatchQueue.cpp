#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"

#include <deque>
#include <mutex>
#include <optional>

namespace KestrioKit {

struct DispatchQueue::State {
    std::mutex lock;
    std::deque<Block> blocks;
    /// Held while a block runs, so that `sync()` and the executor's thread exclude each other. It
    /// is recursive, because a block may run an event loop of its own (a host's dialog), in which
    /// the queue continues.
    std::recursive_mutex running;

    std::optional<Block> takeBlock() {
        const std::lock_guard guard(lock);
        if (blocks.empty())
            return std::nullopt;
        Block block = std::move(blocks.front());
        blocks.pop_front();
        return block;
    }

    void runNext() {
        const std::lock_guard guard(running);
        if (const std::optional<Block> block = takeBlock())
            (*block)();
    }
};

DispatchQueue::DispatchQueue(QString label, Executor &executor)
    : m_label(std::move(label)), m_executor(executor), m_state(std::make_shared<State>()) {}

void DispatchQueue::async(Block block) const {
    {
        const std::lock_guard guard(m_state->lock);
        m_state->blocks.push_back(std::move(block));
    }
    m_executor.post([state = m_state] { state->runNext(); });
}

void DispatchQueue::asyncAfter(DispatchTime deadline,
                               std::shared_ptr<DispatchWorkItem> item) const {
    m_executor.postAt(deadline, [queue = *this, item = std::move(item)] {
        queue.async([item] { item->perform(); });
    });
}

void DispatchQueue::sync(const Block &block) const {
    const std::lock_guard guard(m_state->running);
    while (const std::optional<Block> waiting = m_state->takeBlock())
        (*waiting)();
    block();
}

const DispatchQueue &DispatchQueue::main() {
    static const DispatchQueue *const queue =
        new DispatchQueue(QStringLiteral("main"), ApplicationLifecycle::shared().mainExecutor());
    return *queue;
}

} // namespace KestrioKit
