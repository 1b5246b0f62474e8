#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"
#include "KestrioKit/Core/Platform/Threads/LibraryThread.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QThread>

#include <future>
#include <map>
#include <thread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

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

TEST(EventLoopExecutorTest, RunsBlocksInTheEventLoopOfABlock) {
    QList<int> steps;
    EventLoopExecutor executor(Clock::system());
    executor.attach(QThread::currentThread());
    executor.postAt(Clock::system().now() + 0.01, [&] { steps.append(1); });
    executor.post([&] {
        EXPECT_TRUE(waitFor([&] { return steps.size() == 1; })) << "timed block starved";
        executor.post([&] { steps.append(2); });
        EXPECT_TRUE(waitFor([&] { return steps.size() == 2; })) << "block starved";
        steps.append(3);
    });
    EXPECT_TRUE(waitFor([&] { return steps.size() == 3; }));
    EXPECT_EQ(steps, QList<int>({1, 2, 3}));
    executor.detach();
}

} // namespace KestrioKit
