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

/// The library's thread, which here also knows how much it has still to do. Thread-safe.
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

    /// How many blocks have been posted so far; timed ones do not count.
    std::atomic<int> posted = 0;
    /// How many of them have run and are gone.
    std::atomic<int> done = 0;

private:
    /// The last member, thus ended before the counts go.
    LibraryThread m_thread;
};

/// What the library takes from the world, in the hand of a test: a clock that stands still, a
/// network that is there until `flagsSource` says otherwise, and an empty library folder.
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

    LibraryContext context(std::shared_ptr<URLTransport> transport = {}) {
        return {.clock = clock,
                .executor = thread,
                .fileExecutor = thread,
                .transport = std::move(transport),
                .makeFlagsSource = [source = flagsSource](const QString &) {
                    return source->view();
                }};
    }

    /// Returns when there is nothing left to do, on the library's thread and on the main queue.
    /// What the network or the clock has yet to bring is not waited for.
    void settle() {
        // What the network has just brought may still be being handled there.
        waitForBlock([this](const Block &block) { thread.post(block); });
        int posted = 0;
        do {
            posted = thread.posted;
            ASSERT_TRUE(waitFor([this] { return thread.done == thread.posted; }));
            // Twice: what runs there may have put something more behind itself.
            for (int run = 0; run < 2; ++run)
                waitForBlock([](const Block &block) { DispatchQueue::main().async(block); });
        } while (thread.posted != posted);
    }
    /// Lets so much time pass, in one leap, and what is due by then happen.
    void advance(double seconds) {
        clock.advance(seconds);
        // Behind all that has become due.
        waitForBlock([this](const Block &block) { thread.postAt(clock.now(), block); });
        settle();
    }
    /// Waits until what it gives to `submit` has run.
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
