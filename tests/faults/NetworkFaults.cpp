#include "tests/faults/FaultRow.h"
#include "tests/support/Programs.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QTemporaryDir>

#include <random>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Two hosts of the test's own, joined by one link: the service's, and the application's with a
/// default route over it.
const auto join = uR"(mkdir -p /etc/netns/ks-app &&
    echo 10.203.0.1 kestrio.localhost.test >/etc/netns/ks-app/hosts &&
    ip link add ks0 netns ks-service type veth peer name ks1 netns ks-app &&
    ip -n ks-service addr add 10.203.0.1/24 dev ks0 &&
    ip -n ks-service link set ks0 up && ip -n ks-service link set lo up &&
    ip -n ks-app addr add 10.203.0.2/24 dev ks1 && ip -n ks-app link set ks1 up &&
    ip -n ks-app route add default via 10.203.0.1 &&
    # The kernel takes a while to call a new link a running one.
    timeout 120 sh -c 'until ip -n ks-app link show ks1 | grep -q "state UP"; do sleep 0.1; done')"_s;
const auto part = u"ip netns del ks-service; ip netns del ks-app; rm -rf /etc/netns/ks-app"_s;

/// Ways to take the network from the application, and to give it back but for the route.
const struct Outage {
    QString away;
    QString back;
} outages[] = {
    {u"ip -n ks-app route del default"_s, u"true"_s},
    {u"ip -n ks-app link set ks1 down"_s, u"ip -n ks-app link set ks1 up"_s},
    {u"ip -n ks-app addr del 10.203.0.2/24 dev ks1"_s,
     u"ip -n ks-app addr add 10.203.0.2/24 dev ks1"_s},
    // The cable: nothing changes at the application but the link's state.
    {u"ip -n ks-service link set ks0 down"_s, u"ip -n ks-service link set ks0 up"_s},
};

const QStringList inService{u"netns"_s, u"exec"_s, u"ks-service"_s};

class NetworkFaults : public ::testing::Test {
protected:
    void SetUp() override {
        if (!sh(u"ip netns add ks-service && ip netns add ks-app"_s))
            GTEST_SKIP() << "network namespaces cannot be made here";
        ASSERT_TRUE(sh(join));
    }
    void TearDown() override { sh(part); }

    bool sh(const QString &commands) const { return shell(data.path(), commands); }
    /// What the service was told, each name as often as it came.
    static QStringList delivered() {
        RunningProgram client(u"ip"_s, inService + QStringList{u"curl"_s, u"-s"_s,
                                                               u"http://127.0.0.1:8080/records"_s});
        EXPECT_EQ(client.waitForEnd(), 0);
        const QJsonObject all = QJsonDocument::fromJson(client.output()).object();
        const QJsonArray told{all["events"_L1], all["attributeChanges"_L1]};
        return testNames(QJsonDocument(told).toJson());
    }
    qsizetype said(const char *what) { return host->output().count(what); }
    void pauseUpTo(int longest) { pause((random() % unsigned(longest)) * 1ms); }
    /// An event and an attribute; the event's name.
    QString make() {
        const QString event = u"test-e%1"_s.arg(made.size());
        const QString attribute = u"test-a%1"_s.arg(made.size());
        host->send(u"track %1\nattribute %2 v"_s.arg(event, attribute).toUtf8());
        made << event << attribute;
        return event;
    }

    /// Makes records before, in and after an outage, and waits until what can be sent is.
    void live(const Outage &outage) {
        const qsizetype silences = said("Reachable = false");
        make();
        pauseUpTo(30);
        ASSERT_TRUE(sh(outage.away));
        make();
        if (&outage == &outages[0]) {
            // The service is still on the same link, so only the library's judgement stops it.
            ASSERT_TRUE(waitFor([&] { return said("Reachable = false") > silences; }));
            const QString event = make();
            pauseUpTo(300);
            EXPECT_FALSE(delivered().contains(event));
        }
        pauseUpTo(300);
        ASSERT_TRUE(sh(outage.back));
        pauseUpTo(30);
        make();
        ASSERT_TRUE(sh(u"ip -n ks-app route replace default via 10.203.0.1"_s));
        host->send("wait-for idle 60000\nvisitor");
        ASSERT_EQ(host->nextReport()["visitor"_L1], 1) << host->output().toStdString();
    }

    /// The waits between five sends, beside all else.
    static constexpr auto longestRetry = 105s + patience;
    QTemporaryDir data;
    std::mt19937 random;
    std::unique_ptr<HostProgram> host;
    QSet<QString> made;
};

TEST_F(NetworkFaults, DeliversEachRecordThoughTheNetworkComesAndGoes) {
    FaultRow row("network taken away and given back", 400s);
    const unsigned rounds = unsigned(FaultRow::times(100, 5));
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    random.seed(seed);
    const RunningProgram server(
        u"ip"_s, inService + QStringList{serviceProgramFile(), u"--host"_s, u"::"_s,
                                         u"--database"_s, data.filePath(u"records.sqlite"_s)});
    ASSERT_TRUE(waitFor([&] { return server.errors().contains("listening"); }));
    host = std::make_unique<HostProgram>(
        data.path(),
        Environment{{u"KESTRIO_ENVIRONMENT"_s, {}},
                    {u"KESTRIO_HOSTNAME"_s, u"kestrio.localhost.test"_s},
                    {u"KESTRIO_LOG_LEVEL"_s, u"INFO"_s}},
        QStringList{u"ip"_s, u"netns"_s, u"exec"_s, u"ks-app"_s});
    host->send(HostProgram::start + "visitor");
    ASSERT_EQ(host->nextReport()["visitor"_L1], 1);
    for (unsigned round = 0; round < rounds && !HasFailure(); ++round) {
        // Each way in turn first, then in any order.
        const unsigned way = round < std::size(outages) ? round : unsigned(random());
        live(outages[way % std::size(outages)]);
    }
    QStringList came;
    QSet<QString> missing = made;
    const auto allCame = [&] {
        came = delivered();
        missing.subtract(QSet<QString>(came.begin(), came.end()));
        return missing.isEmpty();
    };
    EXPECT_TRUE(waitFor(allCame, longestRetry)) << host->output().toStdString();
    const qsizetype again = said("Re-enqueuing task");
    row.add({{rounds, "outages"},
             {made.size(), "records"},
             {missing.size(), "lost", 0},
             {again, "sent again"}});
    // Only what was being sent as the network went may come twice.
    row.add({{came.size() + missing.size() - made.size(), "came twice", again}});
    EXPECT_EQ(host->finish(), 0);
}

} // namespace
