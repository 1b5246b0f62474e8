#include "KestrioKit/Platform/RouteFlagsSource.h"

#include "KestrioKit/Platform/LibraryThread.h"
#include "KestrioKit/Platform/RouteMessages.h"
#include "KestrioKit/Queue/Reachability.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryFile>

#include <atomic>
#include <cstdio>
#include <random>

#include <linux/rtnetlink.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

template <typename Value>
void append(std::vector<std::byte> &bytes, const Value &value) {
    const auto *const begin = reinterpret_cast<const std::byte *>(&value);
    bytes.insert(bytes.end(), begin, begin + sizeof value);
}

std::vector<std::byte> routeMessage(rtmsg route, const std::vector<std::byte> &attributes) {
    std::vector<std::byte> bytes;
    const auto size = quint32(sizeof(nlmsghdr) + sizeof route + attributes.size());
    append(bytes, nlmsghdr{size, RTM_NEWROUTE, NLM_F_MULTI, 1, 1});
    append(bytes, route);
    bytes.insert(bytes.end(), attributes.begin(), attributes.end());
    return bytes;
}

std::vector<std::byte> linkAttribute(int link) {
    std::vector<std::byte> bytes;
    append(bytes, rtattr{sizeof(rtattr) + sizeof link, RTA_OIF});
    append(bytes, link);
    return bytes;
}

std::vector<std::byte> multipathAttribute(const std::vector<int> &links) {
    std::vector<std::byte> bytes;
    append(bytes,
           rtattr{quint16(sizeof(rtattr) + links.size() * sizeof(rtnexthop)), RTA_MULTIPATH});
    for (const int link : links)
        append(bytes, rtnexthop{sizeof(rtnexthop), 0, 0, link});
    return bytes;
}

/// Three routes, of which two are default routes, over the links 7, 8 and 9.
std::vector<std::byte> sampleReply() {
    rtmsg defaultRoute{};
    defaultRoute.rtm_type = RTN_UNICAST;
    rtmsg subnet = defaultRoute;
    subnet.rtm_dst_len = 24;
    std::vector<std::byte> bytes = routeMessage(defaultRoute, linkAttribute(7));
    for (const auto &message : {routeMessage(subnet, linkAttribute(5)),
                                routeMessage(defaultRoute, multipathAttribute({8, 9}))})
        bytes.insert(bytes.end(), message.begin(), message.end());
    return bytes;
}

TEST(RouteMessages, namesTheLinksOfDefaultRoutes) {
    const RouteReply reply = parseRouteReply(sampleReply());
    EXPECT_EQ(reply.defaultLinks, (std::vector{7, 8, 9}));
    EXPECT_FALSE(reply.finished);
    EXPECT_EQ(reply.error, 0);
}

TEST(RouteMessages, trustsNoLength) {
    const std::vector<std::byte> whole = sampleReply();
    for (std::size_t size = 1; size < whole.size(); ++size) {
        const std::vector<std::byte> cut(whole.begin(), whole.begin() + std::ptrdiff_t(size));
        EXPECT_LT(parseRouteReply(cut).defaultLinks.size(), 3U) << size;
    }
    std::mt19937 random(1);
    for (int round = 0; round < 20'000; ++round) {
        std::vector<std::byte> spoilt = whole;
        for (int change = 0; change < 3; ++change)
            spoilt[random() % spoilt.size()] = std::byte(random());
        EXPECT_LE(parseRouteReply(spoilt).defaultLinks.size(), whole.size());
    }
}

constexpr char insideNamespace[] = "KESTRIO_TEST_NETWORK_NAMESPACE";

/// Runs a command of the shell; its exit status and what it printed. Not through QProcess, whose
/// way of forking the thread sanitizer cannot follow.
std::pair<int, QByteArray> run(const QByteArray &command) {
    FILE *const output = popen((command + " 2>&1").constData(), "r");
    QByteArray text;
    for (int character = std::getc(output); character != EOF; character = std::getc(output))
        text += char(character);
    return {pclose(output), text};
}

void ip(const QByteArray &arguments) {
    const auto [status, output] = run("ip " + arguments);
    ASSERT_EQ(status, 0) << "ip " << arguments.constData() << ": " << output.constData();
}

/// The machine's network is left alone: what needs a network runs in a process with one of its own,
/// in which "kestrio0" is a cable to "kestrio1".
class RouteFlagsSourceTest : public ::testing::Test {
protected:
    void inNamespace(const std::function<void()> &body) {
        if (!qEnvironmentVariableIsSet(insideNamespace))
            return runThisTestInNamespace();
        ip("link set lo up");
        ip("link add kestrio0 type veth peer name kestrio1");
        ip("link set kestrio0 up");
        ip("link set kestrio1 up");
        giveAddresses();
        source = std::get<0>(RouteFlagsSource::create(thread, Clock::system()));
        body();
    }

    static void giveAddresses() {
        ip("address replace 192.0.2.2/24 dev kestrio0");
        ip("-6 address replace 2001:db8::2/64 dev kestrio0 nodad");
    }

    void watch() {
        monitor = std::get<0>(Reachability::create(source, thread, &DispatchQueue::main()));
        ASSERT_FALSE(monitor->startNotifier());
    }

    bool isReachable() const {
        return std::get<0>(source->flags()) == ReachabilityFlags(ReachabilityFlag::reachable);
    }

    /// Waits until the monitor has been told.
    bool isToldOf(Reachability::Connection connection) {
        return waitFor([&] { return monitor->connection() == connection; });
    }

    LibraryThread thread{Clock::system()};
    std::shared_ptr<ReachabilityFlagsSource> source;
    std::shared_ptr<Reachability> monitor;

private:
    static void runThisTestInNamespace() {
        const QByteArray unshare("unshare --map-root-user --net -- ");
        const QByteArray trial("sh -c 'ip link add type veth && ip -6 addr add ::2 dev lo'");
        if (const auto [status, output] = run(unshare + trial); status != 0)
            GTEST_SKIP() << "no network namespace can be made here: " << output.constData();
        const auto *const test = ::testing::UnitTest::GetInstance()->current_test_info();
        const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
        const auto [status, output] =
            run(insideNamespace + QByteArray("=1 ") + unshare + '"' + program +
                "\" --gtest_filter=" + test->test_suite_name() + '.' + test->name());
        EXPECT_EQ(status, 0) << output.constData();
        EXPECT_TRUE(output.contains("1 test from 1 test suite ran")) << output.constData();
    }
};

TEST_F(RouteFlagsSourceTest, aLiveDefaultRouteIsReachable) {
    inNamespace([this] {
        const struct {
            const char *set;
            const char *undo;
            bool reachable;
        } rows[] = {
            {"route show", "route show", false},
            {"route add default via 192.0.2.1", "route delete default", true},
            {"route add default via 192.0.2.1 metric 4000", "route delete default", true},
            {"route add 198.51.100.0/24 via 192.0.2.1", "route delete 198.51.100.0/24", false},
            {"route add default via 192.0.2.1 table 77", "route flush table 77", true},
            {"route add default nexthop via 192.0.2.1 nexthop via 192.0.2.9",
             "route delete default", true},
            {"route add blackhole default", "route delete blackhole default", false},
            {"route add unreachable default", "route delete unreachable default", false},
            {"route add prohibit default", "route delete prohibit default", false},
            {"route add default dev lo", "route delete default", false},
            {"-6 route add default via 2001:db8::1", "-6 route delete default", true},
            {"-6 route add blackhole default", "-6 route delete blackhole default", false},
        };
        for (const auto &row : rows) {
            SCOPED_TRACE(row.set);
            ip(row.set);
            EXPECT_EQ(isReachable(), row.reachable);
            ip(row.undo);
            EXPECT_FALSE(isReachable());
        }
    });
}

TEST_F(RouteFlagsSourceTest, tellsOfEveryChange) {
    inNamespace([this] {
        using enum Reachability::Connection;
        watch();
        EXPECT_TRUE(isToldOf(unavailable));
        const struct {
            const char *takeAway;
            const char *giveBack;
        } rows[] = {
            {"route delete default", "route add default via 192.0.2.1"},
            {"route replace blackhole default", "route replace default via 192.0.2.1"},
            {"link set kestrio1 down", "link set kestrio1 up"},
            {"link set kestrio0 down", "route add default via 192.0.2.1"},
            // The kernel says nothing of the route that goes with the last address.
            {"-4 address flush dev kestrio0", "route add default via 192.0.2.1"},
            {"route delete default", "-6 route add default via 2001:db8::1"},
        };
        ip("route add default via 192.0.2.1");
        for (const auto &row : rows) {
            SCOPED_TRACE(row.takeAway);
            EXPECT_TRUE(isToldOf(wifi));
            ip(row.takeAway);
            EXPECT_TRUE(isToldOf(unavailable));
            ip("link set kestrio0 up");
            giveAddresses();
            ip(row.giveBack);
        }
        EXPECT_TRUE(isToldOf(wifi));
    });
}

TEST_F(RouteFlagsSourceTest, aStormOfNewsIsReadAFewTimesAndLosesNothing) {
    inNamespace([this] {
        constexpr int routes = 4000;
        QByteArray batch("route add default via 192.0.2.1\n");
        for (int route = 0; route < routes; ++route)
            batch += QByteArray("route add 10.%1.%2.0/24 via 192.0.2.1\n")
                         .replace("%1", QByteArray::number(route / 256))
                         .replace("%2", QByteArray::number(route % 256));
        batch += "route delete default\n";
        bool mediumKnown = false;
        DispatchQueue::main().async([&mediumKnown] { mediumKnown = true; });
        ASSERT_TRUE(waitFor([&mediumKnown] { return mediumKnown; }));
        std::atomic<int> readings = 0;
        std::atomic<bool> reachable = true;
        const DispatchQueue queue(u"readings"_s, thread);
        source->setCallback([&](ReachabilityFlags flags) {
            reachable = flags.testFlag(ReachabilityFlag::reachable);
            ++readings;
        });
        source->setDispatchQueue(&queue);
        QTemporaryFile file;
        ASSERT_TRUE(file.open() && file.write(batch) == batch.size() && file.flush());
        ip("-batch " + QFile::encodeName(file.fileName()));
        EXPECT_TRUE(waitFor([&] { return !reachable; }));
        EXPECT_LT(readings, routes / 10);
        source->setDispatchQueue(nullptr);
        queue.sync([] {});
    });
}

TEST_F(RouteFlagsSourceTest, onlyLocalhostItselfIsAlwaysReachable) {
    inNamespace([this] {
        const struct {
            QString host;
            ReachabilityFlags flags;
        } rows[] = {
            {u"localhost"_s, ReachabilityFlag::reachable | ReachabilityFlag::isLocalAddress |
                                 ReachabilityFlag::isDirect},
            {u"localhost.example"_s, {}},
            {u"api.kestrio.example"_s, {}},
        };
        for (const auto &row : rows) {
            const auto system = ReachabilityFlagsSource::system(thread, Clock::system(), row.host);
            EXPECT_EQ(std::get<0>(std::get<0>(system)->flags()), row.flags) << qPrintable(row.host);
        }
    });
}

} // namespace

} // namespace KestrioKit
