#include "KestrioKit/Queue/Reachability.h"

#include "KestrioKit/Platform/EventLoopExecutor.h"
#include "KestrioKit/Platform/LibraryThread.h"
#include "tests/support/ManualFlagsSource.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QThread>

#include <array>
#include <thread>

namespace KestrioKit {

using Connection = Reachability::Connection;
using Reason = ReachabilityError::Reason;
using enum ReachabilityFlag;

/// A monitor whose queues all run when the test says so, and what it has announced.
class ReachabilityTest : public ::testing::Test {
protected:
    void SetUp() override { executor.attach(QThread::currentThread()); }
    void TearDown() override { executor.detach(); }

    void create(const DispatchQueue *notificationQueue) {
        monitor = std::get<0>(Reachability::create(source, executor, notificationQueue));
        monitor->setWhenReachable([this](Reachability &) { announced += QLatin1Char('R'); });
        monitor->setWhenUnreachable([this](Reachability &) { announced += QLatin1Char('U'); });
        QObject::connect(monitor.get(), &Reachability::reachabilityChanged,
                         [this] { announced += QLatin1Char('!'); });
    }

    /// Changes go from the executor to the main queue; so does this.
    void runQueues() {
        bool done = false;
        executor.post([&done] { DispatchQueue::main().async([&done] { done = true; }); });
        ASSERT_TRUE(waitFor([&done] { return done; }));
    }

    EventLoopExecutor executor{Clock::system()};
    std::shared_ptr<ManualFlagsSource> source = std::make_shared<ManualFlagsSource>();
    std::shared_ptr<Reachability> monitor;
    QString announced;
};

TEST_F(ReachabilityTest, flagsMakeTheConnectionAndTheText) {
    const struct {
        ReachabilityFlags flags;
        bool allowsCellularConnection;
        Connection connection;
        const char *description;
    } rows[] = {
        {{}, true, Connection::unavailable, "-- -------"},
        {isDirect, true, Connection::unavailable, "-- ------d"},
        {reachable | isDirect, true, Connection::wifi, "-R ------d"},
        {reachable | isLocalAddress | transientConnection, false, Connection::wifi, "-R -t---l-"},
        {reachable | isWWAN, true, Connection::cellular, "WR -------"},
        {reachable | isWWAN, false, Connection::unavailable, "WR -------"},
        {reachable | isWWAN | connectionRequired, true, Connection::cellular, "WR c------"},
        {reachable | connectionRequired, true, Connection::unavailable, "-R c------"},
        {reachable | connectionRequired | connectionOnDemand, true, Connection::wifi, "-R c---D--"},
        {reachable | connectionRequired | connectionOnTraffic, true, Connection::wifi,
         "-R c--C---"},
        {reachable | connectionRequired | connectionOnDemand | interventionRequired, true,
         Connection::unavailable, "-R c-i-D--"},
        {reachable | connectionOnTraffic | interventionRequired, true, Connection::wifi,
         "-R --iC---"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.description);
        source = std::make_shared<ManualFlagsSource>(row.flags);
        create(nullptr);
        monitor->setAllowsCellularConnection(row.allowsCellularConnection);
        EXPECT_EQ(monitor->description(), QLatin1String("unavailable flags"));
        EXPECT_EQ(monitor->connection(), row.connection);
        EXPECT_EQ(monitor->description(), QLatin1String(row.description));
    }
}

TEST_F(ReachabilityTest, announcesEachChangeOnceOnTheNotificationQueue) {
    create(&DispatchQueue::main());
    EXPECT_FALSE(monitor->startNotifier());
    EXPECT_EQ(announced, QString());
    runQueues();
    EXPECT_EQ(announced, QLatin1String("R!"));

    source->change(reachable);
    runQueues();
    EXPECT_EQ(announced, QLatin1String("R!"));
    source->change({});
    source->change({});
    runQueues();
    EXPECT_EQ(announced, QLatin1String("R!U!"));
    EXPECT_EQ(monitor->connection(), Connection::unavailable);
    source->change(reachable | isWWAN);
    runQueues();
    source->change(reachable);
    runQueues();
    EXPECT_EQ(announced, QLatin1String("R!U!R!R!"));
}

TEST_F(ReachabilityTest, announcesWhereTheChangeWasSeenWithoutANotificationQueue) {
    create(nullptr);
    EXPECT_FALSE(monitor->startNotifier());
    EXPECT_EQ(announced, QLatin1String("R!"));
}

TEST_F(ReachabilityTest, startsOnceAndStops) {
    create(nullptr);
    EXPECT_FALSE(monitor->startNotifier());
    EXPECT_FALSE(monitor->startNotifier());
    EXPECT_TRUE(monitor->notifierRunning());
    EXPECT_EQ(source->registrations(), 1);

    monitor->stopNotifier();
    EXPECT_FALSE(monitor->notifierRunning());
    source->change({});
    runQueues();
    EXPECT_EQ(announced, QLatin1String("R!"));
    EXPECT_FALSE(monitor->startNotifier());
    EXPECT_EQ(announced, QLatin1String("R!U!"));
}

TEST_F(ReachabilityTest, failingStartsLeaveNothingBehind) {
    constexpr int code = 13;
    const struct {
        ManualFlagsSource::Errors errors;
        Reason reason;
    } rows[] = {
        {{.setCallback = code}, Reason::unableToSetCallback},
        {{.setDispatchQueue = code}, Reason::unableToSetDispatchQueue},
        {{.flags = code}, Reason::unableToGetFlags},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(int(row.reason));
        create(nullptr);
        source->fail(row.errors);
        EXPECT_EQ(monitor->startNotifier(), (ReachabilityError{row.reason, code, {}}));
        EXPECT_FALSE(monitor->notifierRunning());
        EXPECT_FALSE(source->isListenedTo());
        source->fail({});
        EXPECT_FALSE(monitor->startNotifier());
        EXPECT_TRUE(source->isListenedTo());
    }
}

TEST_F(ReachabilityTest, unreadableFlagsAreUnavailable) {
    source->fail({.flags = 5});
    create(nullptr);
    EXPECT_EQ(monitor->connection(), Connection::unavailable);
    EXPECT_EQ(announced, QString());
}

TEST_F(ReachabilityTest, failedCreationIsAnError) {
    const auto created = Reachability::create(ENOENT, executor, nullptr);
    const auto *const error = std::get_if<ReachabilityError>(&created);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(*error, (ReachabilityError{Reason::failedToCreateWithAddress, ENOENT,
                                         QStringLiteral("0.0.0.0")}));
    const Error general = error->toError();
    EXPECT_EQ(general.domain, reachabilityErrorDomain);
    EXPECT_TRUE(general.localizedDescription.contains(QLatin1String("error 2 (")))
        << qPrintable(general.localizedDescription);
}

TEST_F(ReachabilityTest, isNotKeptAliveAndGoesAtAnyMoment) {
    create(&DispatchQueue::main());
    EXPECT_FALSE(monitor->startNotifier());
    source->change({});
    monitor.reset();
    EXPECT_FALSE(source->isListenedTo());
    runQueues();
    EXPECT_EQ(announced, QString());

    create(nullptr);
    monitor->setWhenUnreachable([this](Reachability &) { monitor.reset(); });
    EXPECT_FALSE(monitor->startNotifier());
    EXPECT_EQ(announced, QLatin1String("!"));
    EXPECT_FALSE(source->isListenedTo());
}

TEST(ReachabilityThreads, lastChangeIsAnnouncedLast) {
    LibraryThread thread(Clock::system());
    for (int round = 0; round < 20; ++round) {
        const auto source = std::make_shared<ManualFlagsSource>();
        const auto monitor =
            std::get<0>(Reachability::create(source, thread, &DispatchQueue::main()));
        bool last = false;
        QObject::connect(monitor.get(), &Reachability::reachabilityChanged, monitor.get(),
                         [&] { last = monitor->flags() == isDirect; });
        std::array<std::thread, 3> changers;
        for (std::thread &changer : changers) {
            changer = std::thread([&source] {
                for (int change = 0; change < 100; ++change)
                    source->change(change % 2 == 0 ? reachable : reachable | isWWAN);
            });
        }
        EXPECT_FALSE(monitor->startNotifier());
        monitor->setAllowsCellularConnection(round % 2 == 0);
        monitor->stopNotifier();
        EXPECT_FALSE(monitor->startNotifier());
        for (std::thread &changer : changers)
            changer.join();
        source->change(isDirect);
        ASSERT_TRUE(waitFor([&last] { return last; }));
        EXPECT_EQ(monitor->connection(), Connection::unavailable);
        source->change(reachable);
    }
}

} // namespace KestrioKit
