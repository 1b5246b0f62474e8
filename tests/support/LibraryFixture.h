#pragma once

#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Platform/Storage.h"
#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"
#include "KestrioKit/Core/Platform/Threads/LibraryThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualFlagsSource.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QStandardPaths>

#include <atomic>

namespace KestrioKit {

/// The library's thread. It also counts the blocks that were posted and the blocks that have run.
/// Thread-safe.
class CountedThread final : public Executor {
public:
    explicit CountedThread(const Clock &clock) : m_thread(clock) {}

    void post(Block block) override {
        ++posted;
        m_thread.post([this, block = std::move(block)]() mutable {
            std::exchange(block, {})();
            ++done;
        });
    }
    void postAt(DispatchTime deadline, Block block) override {
        m_thread.postAt(deadline, std::move(block));
    }

    /// How many blocks have been posted so far, without timed ones.
    std::atomic<int> posted = 0;
    /// How many of these blocks have run and have been destroyed.
    std::atomic<int> done = 0;

private:
    /// The last member, so that the thread ends before the counters are destroyed.
    LibraryThread m_thread;
};

/// The library's surroundings under the control of a test: a clock that stands still, a network
/// that is available until `flagsSource` says otherwise, and an empty library folder.
///
///     queue->appendRequest(record);
///     settle();
///     EXPECT_EQ(sender.requests().size(), 1);
///     advance(5);
class LibraryFixture : public ::testing::Test {
protected:
    LibraryFixture() {
        QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).removeRecursively();
        Storage::setUp();
    }

    /// Returns a context with the manual clock, the counted thread and the manual network.
    LibraryContext context(std::shared_ptr<URLTransport> transport = {}) {
        return {.clock = clock,
                .executor = thread,
                .fileExecutor = thread,
                .transport = std::move(transport),
                .makeFlagsSource = [source = flagsSource](const QString &) {
                    return source->view();
                }};
    }

    /// Waits until neither the library's thread nor the main queue has anything left to do. It does
    /// not wait for the network or for later times of the clock.
    void settle() {
        // The library's thread may still be handling what the network has just delivered.
        waitForBlock([this](const Block &block) { thread.post(block); });
        int posted = 0;
        do {
            posted = thread.posted;
            ASSERT_TRUE(waitFor([this] { return thread.done == thread.posted; }));
            // Runs twice, because a block may post another one behind itself.
            for (int run = 0; run < 2; ++run)
                waitForBlock([](const Block &block) { DispatchQueue::main().async(block); });
        } while (thread.posted != posted);
    }
    /// Advances the clock by `seconds` in one step, then waits until everything that is due has
    /// happened.
    void advance(double seconds) {
        clock.advance(seconds);
        // This block runs after all blocks that have become due.
        waitForBlock([this](const Block &block) { thread.postAt(clock.now(), block); });
        settle();
    }
    /// Passes a block to `submit` and waits until the block has run.
    static void waitForBlock(const std::function<void(Block)> &submit) {
        std::atomic<bool> done = false;
        submit([&done] { done = true; });
        ASSERT_TRUE(waitFor([&done] { return done.load(); }));
    }

    ManualClock clock;
    std::shared_ptr<ManualFlagsSource> flagsSource = std::make_shared<ManualFlagsSource>();
    CountedThread thread{clock};
};

} // namespace KestrioKit
