#include "KestrioKit/Platform/DispatchQueue.h"
#include "KestrioKit/Platform/LibraryThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QThread>

#include <future>
#include <map>
#include <thread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// What blocks leave behind, in the order in which they ran.
using Trail = Atomic<QList<int>>;

Block step(Trail &trail, int number) {
    return [&trail, number] {
        trail.mutate([number](auto &steps) { steps.append(number); });
    };
}

} // namespace

TEST(DispatchQueueTest, RunsBlocksOneByOneInOrderOnItsThreadOrThatOfSync) {
    std::map<int, std::vector<int>> ran; // unguarded: the thread sanitizer would see two at once
    std::promise<void> gate;
    LibraryThread thread(Clock::system());
    const DispatchQueue queue(u"test"_s, thread);
    thread.post([&gate] { gate.get_future().wait(); }); // keeps the thread busy, but not the queue
    std::vector<std::jthread> posters;
    for (int poster = 0; poster < 4; ++poster) {
        posters.emplace_back([&, poster] {
            for (int number = 0; number < 500; ++number)
                queue.async([&ran, poster, number] { ran[poster].push_back(number); });
            queue.sync([&, caller = std::this_thread::get_id()] {
                EXPECT_EQ(caller, std::this_thread::get_id());
                EXPECT_EQ(ran[poster].size(), 500);
                EXPECT_TRUE(std::is_sorted(ran[poster].begin(), ran[poster].end()));
            });
            if (poster == 0)
                gate.set_value();
        });
    }
}

TEST(DispatchQueueTest, RunsTimedBlocksInTheOrderOfTheirDeadlinesUnlessCancelled) {
    Trail trail;
    ManualClock clock;
    LibraryThread thread(clock);
    const DispatchQueue queue(u"test"_s, thread);
    const auto cancelled = std::make_shared<DispatchWorkItem>(step(trail, 9));
    queue.asyncAfter(clock.now() + 5, cancelled);
    thread.postAt(clock.now() + 10, step(trail, 3));
    thread.postAt(clock.now() + 5, step(trail, 1));
    thread.postAt(clock.now() + 5, step(trail, 2));
    thread.postAt(DispatchTime::distantFuture(), step(trail, 9));
    cancelled->cancel();
    const QList<int> expected[] = {{}, {1, 2}, {1, 2, 3}};
    for (const QList<int> &steps : expected) {
        std::promise<void> drained;
        thread.postAt(clock.now(), [&] { thread.post([&] { drained.set_value(); }); });
        drained.get_future().wait();
        EXPECT_EQ(trail.value(), steps);
        clock.advance(5);
    }
}

TEST(EventLoopExecutorTest, RunsBlocksInTheEventLoopOfABlock) {
    Trail trail;
    EventLoopExecutor executor(Clock::system());
    executor.attach(QThread::currentThread());
    executor.postAt(Clock::system().now() + 0.01, step(trail, 1));
    executor.post([&] {
        EXPECT_TRUE(waitFor([&] { return trail.value().size() == 1; })) << "timed block starved";
        executor.post(step(trail, 2));
        EXPECT_TRUE(waitFor([&] { return trail.value().size() == 2; })) << "block starved";
        step(trail, 3)();
    });
    EXPECT_TRUE(waitFor([&] { return trail.value().size() == 3; }));
    EXPECT_EQ(trail.value(), QList<int>({1, 2, 3}));
    executor.detach();
}

} // namespace KestrioKit
