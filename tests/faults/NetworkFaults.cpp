#include "tests/faults/FaultRow.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <optional>
#include <random>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto hostName = u"kestrio.localhost.test"_s;

/// A way to take the network from the application, and to give it back. "S" stands for the
/// service's namespace, "A" for the application's.
struct Outage {
    const char *away;
    QByteArrayList back;
};

const Outage outages[] = {
    {"-n A route del default", {}},
    {"-n A link set ks1 down", {"-n A link set ks1 up"}},
    {"-n A addr del 10.203.0.2/24 dev ks1", {"-n A addr add 10.203.0.2/24 dev ks1"}},
    // The cable: nothing changes at the application but the link's state.
    {"-n S link set ks0 down", {"-n S link set ks0 up"}},
};

/// Two hosts of the test's own, joined by one link: the service's, and the application's with a
/// default route over it.
class NetworkFaults : public ::testing::Test {
protected:
    void SetUp() override {
        if (!ip("netns add S") || !ip("netns add A"))
            GTEST_SKIP() << "network namespaces cannot be made here";
        QDir().mkpath(u"/etc/netns/"_s + application);
        QFile hosts(u"/etc/netns/%1/hosts"_s.arg(application));
        ASSERT_TRUE(hosts.open(QIODevice::WriteOnly));
        hosts.write("10.203.0.1 " + hostName.toUtf8() + '\n');
        hosts.close();
        for (const char *const command :
             {"link add ks0 netns S type veth peer name ks1 netns A",
              "-n S addr add 10.203.0.1/24 dev ks0", "-n A addr add 10.203.0.2/24 dev ks1",
              "-n S link set ks0 up", "-n S link set lo up", "-n A link set ks1 up", defaultRoute})
            ASSERT_TRUE(ip(command)) << command;
        // The kernel takes a while to call a new link a running one.
        ASSERT_TRUE(waitFor([this] { return run("-n A link show ks1").contains("state UP"); }));
    }

    void TearDown() override {
        ip("netns del S");
        ip("netns del A");
        QDir(u"/etc/netns/"_s + application).removeRecursively();
    }

    QStringList words(const QByteArray &command) const {
        QStringList words = QString::fromUtf8(command).split(u' ');
        words.replaceInStrings(QRegularExpression(u"^S$"_s), service);
        words.replaceInStrings(QRegularExpression(u"^A$"_s), application);
        return words;
    }
    bool ip(const QByteArray &command) const {
        return RunningProgram(u"ip"_s, words(command)).waitForEnd() == 0;
    }
    QByteArray run(const QByteArray &command) const {
        RunningProgram program(u"ip"_s, words(command));
        program.waitForEnd();
        return program.output();
    }

    /// What the service was told, each name as often as it came.
    QStringList delivered() const {
        const QByteArray all = run("netns exec S curl -s http://127.0.0.1:8080/records");
        const QJsonObject records = QJsonDocument::fromJson(all).object();
        QStringList names;
        for (const QJsonValue batch : records["events"_L1].toArray()) {
            for (const QJsonValue event : batch["body"_L1]["events"_L1].toArray())
                names.append(event["event"_L1].toString());
        }
        for (const QJsonValue change : records["attributeChanges"_L1].toArray())
            names.append(change["key"_L1].toString());
        return names;
    }

    qsizetype said(const char *what) { return host->program().output().count(what); }
    void pause(int longest) {
        const std::chrono::milliseconds time(random() % unsigned(longest));
        waitFor([] { return false; }, time);
    }
    /// An event and an attribute; their name.
    QString make() {
        const QByteArray number = QByteArray::number(made.size() / 2);
        host->send("track Event" + number + "\nattribute Key" + number + " v");
        const QString event = u"Event"_s + QString::fromUtf8(number);
        made << event << u"Key"_s + QString::fromUtf8(number);
        return event;
    }

    /// Makes records before, in and after an outage, and waits until what can be sent is.
    void live(const Outage &outage) {
        const qsizetype silences = said("Reachable = false");
        make();
        pause(30);
        ASSERT_TRUE(ip(outage.away)) << outage.away;
        make();
        if (&outage == &outages[0]) {
            // The service is still on the same link, so only the library's judgement stops it.
            ASSERT_TRUE(waitFor([&] { return said("Reachable = false") > silences; }));
            const QString event = make();
            pause(300);
            EXPECT_FALSE(delivered().contains(event));
        }
        pause(300);
        for (const QByteArray &command : outage.back)
            ASSERT_TRUE(ip(command)) << command.constData();
        pause(30);
        make();
        ASSERT_TRUE(ip(defaultRoute));
        host->send("wait-for idle 15000\nvisitor");
        ASSERT_EQ(host->nextReport()[u"visitor"_s], 1) << host->program().output().toStdString();
    }

    /// The waits between five sends, and some.
    static constexpr auto longestRetry = 110s;
    static constexpr auto defaultRoute = "-n A route replace default via 10.203.0.1";
    const QString id = QString::number(QCoreApplication::applicationPid());
    const QString service = u"ks-service-"_s + id;
    const QString application = u"ks-app-"_s + id;
    QTemporaryDir data;
    std::mt19937 random;
    std::optional<HostProgram> host;
    QSet<QString> made;
};

TEST_F(NetworkFaults, DeliversEachRecordThoughTheNetworkComesAndGoes) {
    FaultRow row("network taken away and given back", 400s);
    const int rounds = FaultRow::times(100, 5);
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    random.seed(seed);
    const RunningProgram server(u"ip"_s, words("netns exec S") +
                                             QStringList{serviceProgramFile(), u"--database"_s,
                                                         data.filePath(u"records.sqlite"_s)});
    ASSERT_TRUE(waitFor([&] { return server.errors().contains("listening"); }));
    host.emplace(data.path(),
                 Environment{{u"KESTRIO_ENVIRONMENT"_s, {}},
                             {u"KESTRIO_HOSTNAME"_s, hostName},
                             {u"KESTRIO_LOG_LEVEL"_s, u"INFO"_s}},
                 QStringList(u"ip"_s) + words("netns exec A"));
    host->send("configure env\nwait-for visitor 10000\nwait-for idle 10000\nvisitor");
    ASSERT_EQ(host->nextReport()[u"visitor"_s], 1);
    for (unsigned round = 0; round < unsigned(rounds) && !HasFailure(); ++round) {
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
    waitFor(allCame, longestRetry);
    EXPECT_EQ(missing, QSet<QString>()) << host->program().output().toStdString();
    came.removeIf([&](const QString &name) { return !made.contains(name); });
    const qsizetype twice = came.size() + missing.size() - made.size();
    // Only what was being sent as the network went may come twice.
    EXPECT_LE(twice, said("Re-enqueuing task"));
    EXPECT_EQ(host->finish(), 0);
    row.add(rounds, "outages");
    row.add(made.size(), "records");
    row.add(missing.size(), "lost");
    row.add(said("Re-enqueuing task"), "sent again");
    row.add(twice, "came twice");
}

} // namespace
