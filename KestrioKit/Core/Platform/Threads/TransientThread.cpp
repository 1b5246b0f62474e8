#include "KestrioKit/Core/Platform/Threads/TransientThread.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

namespace KestrioKit {

/// Shared with the thread, which is detached: if a block hangs, the thread runs until the process
/// ends. QThreadPool is unsuitable. It permanently counts a thread that it failed to start, and in
/// a forked child it waits forever for threads that do not exist there.
struct TransientThread::State : std::enable_shared_from_this<State> {
    std::mutex lock;
    std::condition_variable changed;
    std::deque<Block> blocks;
    bool isThere = false;
    bool isBusy = false;

    // Called with the lock held. If the system cannot create a thread, the next block tries again.
    void start() {
        if (isThere)
            return;
        try {
            std::thread([self = shared_from_this()] { self->run(); }).detach();
            isThere = true;
        } catch (const std::system_error &) {
        }
    }

    void run() {
        std::unique_lock guard(lock);
        while (changed.wait_for(guard, idleLimit, [this] { return !blocks.empty(); })) {
            Block block = std::move(blocks.front());
            blocks.pop_front();
            isBusy = true;
            guard.unlock();
            std::exchange(block, {})();
            guard.lock();
            isBusy = false;
            changed.notify_all();
        }
        isThere = false;
    }

    void finish() {
        std::unique_lock guard(lock);
        if (!blocks.empty())
            start();
        changed.wait_for(guard, stopLimit, [this] { return blocks.empty() && !isBusy; });
    }
};

TransientThread::TransientThread()
    : m_state(std::make_shared<State>()),
      m_applicationTerminated(ApplicationLifecycle::shared().observe(
          ApplicationLifecycle::Event::terminated, [state = m_state] { state->finish(); })) {}

void TransientThread::post(Block block) {
    const std::lock_guard guard(m_state->lock);
    m_state->blocks.push_back(std::move(block));
    m_state->start();
    m_state->changed.notify_all();
}

} // namespace KestrioKit
