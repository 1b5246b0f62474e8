#pragma once

#include "KestrioKit/Platform/LibraryThread.h"

#include <atomic>

namespace KestrioKit {

/// The library's thread, which here also knows how much it has still to do. Thread-safe.
class CountedThread final : public Executor {
public:
    explicit CountedThread(const Clock &clock) : m_thread(clock) {}

    void post(Block block) override {
        ++m_posted;
        m_thread.post([this, block = std::move(block)]() mutable {
            std::exchange(block, {})();
            ++m_done;
        });
    }

    void postAt(DispatchTime deadline, Block block) override {
        m_thread.postAt(deadline, std::move(block));
    }

    /// How many blocks have been posted so far; timed ones do not count.
    int posted() const { return m_posted; }
    /// How many of them have run and are gone.
    int done() const { return m_done; }

private:
    std::atomic<int> m_posted = 0;
    std::atomic<int> m_done = 0;
    /// The last member, thus ended before the counts go.
    LibraryThread m_thread;
};

} // namespace KestrioKit
