#include "KestrioKit/Core/Queue/Reachability.h"

#include "tests/support/LibraryFixture.h"

namespace KestrioKit {

using enum Reachability::Connection;
using enum ReachabilityFlag;

/// A monitor and what it has announced: "R" and "U" for the callbacks, "!" for the signal.
class ReachabilityTest : public LibraryFixture {
protected:
    void SetUp() override {
        monitor = std::get<0>(Reachability::create(flagsSource, thread, &DispatchQueue::main()));
        monitor->setWhenReachable([this](Reachability &) { announced += u'R'; });
        monitor->setWhenUnreachable([this](Reachability &) { announced += u'U'; });
        QObject::connect(monitor.get(), &Reachability::reachabilityChanged,
                         [this] { announced += u'!'; });
    }

    std::shared_ptr<Reachability> monitor;
    QString announced;
};

TEST_F(ReachabilityTest, FlagsMakeTheConnectionAndTheText) {
    const struct {
        ReachabilityFlags flags;
        Reachability::Connection connection;
        const char *description;
    } rows[] = {
        {isDirect, unavailable, "-- ------d"},
        {reachable | isLocalAddress | transientConnection, wifi, "-R -t---l-"},
        {reachable | connectionRequired | connectionOnDemand, wifi, "-R c---D--"},
        {reachable | connectionRequired | connectionOnTraffic, wifi, "-R c--C---"},
        {reachable | connectionRequired | connectionOnDemand | interventionRequired, unavailable,
         "-R c-i-D--"},
        {reachable | connectionOnTraffic | interventionRequired, wifi, "-R --iC---"},
        {reachable | isWWAN | connectionRequired, cellular, "WR c------"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.description);
        SetUp();
        flagsSource->change(row.flags);
        EXPECT_EQ(monitor->description(), QLatin1String("unavailable flags"));
        EXPECT_EQ(monitor->connection(), row.connection);
        EXPECT_EQ(monitor->description(), QLatin1String(row.description));
    }
    monitor->setAllowsCellularConnection(false);
    EXPECT_EQ(monitor->connection(), unavailable);
}

TEST_F(ReachabilityTest, AnnouncesEachChangeOnceUntilItIsDropped) {
    EXPECT_FALSE(monitor->startNotifier());
    EXPECT_EQ(announced, QString());
    settle();
    EXPECT_EQ(announced, QLatin1String("R!"));
    const ReachabilityFlags changes[] = {reachable, {}, {}, reachable | isWWAN, reachable};
    for (const ReachabilityFlags flags : changes) {
        flagsSource->change(flags);
        settle();
    }
    EXPECT_EQ(announced, QLatin1String("R!U!R!R!"));
    monitor.reset();
    EXPECT_FALSE(flagsSource->isListenedTo());
}

TEST_F(ReachabilityTest, AStartThatFailsLeavesNothingBehind) {
    const ReachabilityError error{ReachabilityError::Reason::unableToSetDispatchQueue, 13, {}};
    flagsSource->failToStart(13);
    EXPECT_EQ(monitor->startNotifier(), error);
    EXPECT_FALSE(monitor->notifierRunning() || flagsSource->isListenedTo());
    flagsSource->failToStart({});
    EXPECT_FALSE(monitor->startNotifier());
    EXPECT_TRUE(monitor->notifierRunning() && flagsSource->isListenedTo());
}

} // namespace KestrioKit
