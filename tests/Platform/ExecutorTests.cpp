#include "KestrioKit/Platform/DispatchQueue.h"
#include "KestrioKit/Platform/LibraryThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QEventLoop>
#include <QThread>

#include <future>
#include <thread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// What blocks leave behind, in the order in which they ran.
class Trail {
public:
    Block step(int number) {
        return [this, number] {
            m_steps.mutate([&](auto &steps) { steps.append(number); });
        };
    }
    std::shared_ptr<DispatchWorkItem> item(int number) {
        return std::make_shared<DispatchWorkItem>(step(number));
    }
    QList<int> steps() const { return m_steps.value(); }

private:
    Atomic<QList<int>> m_steps;
};

/// Waits until everything has run that is posted or due by now, and what that posts.
void drain(Executor &executor, const Clock &clock = Clock::system()) {
    const auto ran = std::make_shared<std::promise<void>>();
    executor.postAt(clock.now(), [&executor, ran] { executor.post([ran] { ran->set_value(); }); });
    ran->get_future().wait();
}

} // namespace

TEST(LibraryThreadTest, RunsBlocksOffTheMainThreadInTheOrderOfEachPoster) {
    constexpr int posters = 4;
    constexpr int blocksEach = 500;
    std::array<std::vector<int>, posters> ran; // touched by the one thread alone
    LibraryThread thread(Clock::system());
    std::vector<std::thread> threads;
    for (int poster = 0; poster < posters; ++poster) {
        threads.emplace_back([&, poster] {
            for (int number = 0; number < blocksEach; ++number)
                thread.post([&, poster, number] { ran.at(std::size_t(poster)).push_back(number); });
        });
    }
    for (std::thread &poster : threads)
        poster.join();
    QThread *runner = nullptr;
    thread.post([&] { runner = QThread::currentThread(); });
    drain(thread);
    EXPECT_NE(runner, QThread::currentThread());
    for (const std::vector<int> &numbers : ran) {
        EXPECT_EQ(numbers.size(), blocksEach);
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST(LibraryThreadTest, RunsTimedBlocksInTheOrderOfTheirDeadlines) {
    Trail trail;
    ManualClock clock;
    LibraryThread thread(clock);
    thread.postAt(clock.now() + 10, trail.step(3));
    thread.postAt(clock.now() + 5, trail.step(1));
    thread.postAt(clock.now() + 5, trail.step(2));
    thread.postAt(DispatchTime::distantFuture(), trail.step(4));
    thread.postAt(clock.now(), trail.step(0));
    const struct {
        double advance;
        QList<int> ran;
    } cases[] = {{0, {0}}, {4.999, {0}}, {0.001, {0, 1, 2}}, {60, {0, 1, 2, 3}}};
    for (const auto &row : cases) {
        clock.advance(row.advance);
        drain(thread, clock);
        EXPECT_EQ(trail.steps(), row.ran);
    }
}

TEST(LibraryThreadTest, WakesByItselfWhenADeadlineComes) {
    Trail trail;
    LibraryThread thread(Clock::system());
    thread.postAt(Clock::system().now() + 0.02, trail.step(1));
    EXPECT_TRUE(waitFor([&] { return trail.steps().size() == 1; }));
}

TEST(LibraryThreadTest, EndsAfterTheRunningBlockAndLeavesTheRestUnrun) {
    Trail trail;
    std::promise<void> begun;
    std::promise<void> ending;
    {
        LibraryThread thread(Clock::system());
        thread.postAt(Clock::system().now() + 0.02, trail.step(2));
        thread.postAt(Clock::system().now() + 3600, trail.step(3));
        thread.post([&] {
            begun.set_value();
            ending.get_future().wait();
            trail.step(1)();
        });
        begun.get_future().wait();
        ending.set_value();
    }
    EXPECT_EQ(trail.steps().value(0), 1);
    EXPECT_FALSE(trail.steps().contains(3));
}

TEST(EventLoopExecutorTest, KeepsBlocksForTheNextThreadItIsAttachedTo) {
    Trail trail;
    EventLoopExecutor executor(Clock::system());
    for (int round = 0; round < 3; ++round) {
        executor.post(trail.step(2 * round));
        executor.postAt(Clock::system().now(), trail.step(2 * round + 1));
        QThread thread;
        executor.attach(&thread);
        thread.start();
        drain(executor);
        thread.quit();
        thread.wait();
        executor.detach();
    }
    EXPECT_EQ(trail.steps(), QList<int>({0, 1, 2, 3, 4, 5}));
}

TEST(EventLoopExecutorTest, RunsBlocksInTheEventLoopOfABlock) {
    Trail trail;
    EventLoopExecutor executor(Clock::system());
    executor.attach(QThread::currentThread());
    executor.postAt(Clock::system().now() + 0.01, trail.step(1));
    executor.post([&] {
        EXPECT_TRUE(waitFor([&] { return trail.steps().size() == 1; })) << "timed block starved";
        executor.post(trail.step(2));
        EXPECT_TRUE(waitFor([&] { return trail.steps().size() == 2; })) << "block starved";
        trail.step(3)();
    });
    EXPECT_TRUE(waitFor([&] { return trail.steps().size() == 3; }));
    EXPECT_EQ(trail.steps(), QList<int>({1, 2, 3}));
    executor.detach();
}

TEST(DispatchQueueTest, RunsItsBlocksInOrderAndOutlivesItself) {
    Trail trail;
    std::promise<void> gate;
    LibraryThread thread(Clock::system());
    thread.post([&] { gate.get_future().wait(); });
    {
        const DispatchQueue queue(u"test"_s, thread);
        queue.async(trail.step(1));
        queue.async([&trail, queue] {
            queue.async(trail.step(3));
            trail.step(2)();
        });
    }
    EXPECT_TRUE(trail.steps().isEmpty());
    gate.set_value();
    drain(thread);
    EXPECT_EQ(trail.steps(), QList<int>({1, 2, 3}));
}

TEST(DispatchQueueTest, SyncRunsOnTheCallersThreadAfterWhatWaits) {
    Trail trail;
    std::promise<void> begun;
    std::promise<void> gate;
    LibraryThread thread(Clock::system());
    const DispatchQueue queue(u"test"_s, thread);
    const DispatchQueue other(u"other"_s, thread);
    other.async([&] { // keeps the thread busy, but not the queue
        begun.set_value();
        gate.get_future().wait();
    });
    begun.get_future().wait();
    queue.async(trail.step(1));
    other.async(trail.step(3));
    std::thread::id caller;
    queue.sync([&] {
        caller = std::this_thread::get_id();
        trail.step(2)();
    });
    EXPECT_EQ(caller, std::this_thread::get_id());
    EXPECT_EQ(trail.steps(), QList<int>({1, 2}));
    gate.set_value();
    drain(thread);
    EXPECT_EQ(trail.steps(), QList<int>({1, 2, 3}));
}

TEST(DispatchQueueTest, NeverRunsTwoBlocksAtOnce) {
    constexpr int rounds = 1000;
    int count = 0; // unguarded: the thread sanitizer would see two at once
    LibraryThread thread(Clock::system());
    const DispatchQueue queue(u"test"_s, thread);
    for (int round = 0; round < rounds; ++round) {
        queue.async([&] { ++count; });
        if (round % 10 == 0)
            queue.sync([&] { ++count; });
    }
    queue.sync([&] { EXPECT_EQ(count, rounds + rounds / 10); });
}

TEST(DispatchQueueTest, RunsAnItemWhenItIsDueUnlessItWasCancelled) {
    Trail trail;
    ManualClock clock;
    LibraryThread thread(clock);
    const DispatchQueue queue(u"test"_s, thread);
    const auto cancelled = trail.item(1);
    queue.asyncAfter(clock.now() + 5, cancelled);
    queue.asyncAfter(clock.now() + 5, trail.item(2));
    queue.async(trail.step(0));
    drain(thread, clock);
    EXPECT_EQ(trail.steps(), QList<int>({0}));
    cancelled->cancel();
    clock.advance(5);
    drain(thread, clock);
    EXPECT_EQ(trail.steps(), QList<int>({0, 2}));
}

TEST(DispatchQueueTest, MainRunsBlocksInTheEventLoopOfAHostsBlock) {
    Trail trail;
    DispatchQueue::main().async([&] {
        DispatchQueue::main().async(trail.step(1));
        EXPECT_TRUE(waitFor([&] { return trail.steps().size() == 1; })) << "starved";
        trail.step(2)();
    });
    EXPECT_TRUE(waitFor([&] { return trail.steps().size() == 2; }));
    EXPECT_EQ(trail.steps(), QList<int>({1, 2}));
}

} // namespace KestrioKit
