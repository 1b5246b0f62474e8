#include "tests/faults/FaultRow.h"
#include "tests/support/Programs.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A program that starts while its service is away.
class StartFaults : public ::testing::Test {
protected:
    static constexpr int eventCount = 20;
    static constexpr auto failed = "Start-up has failed.";
    static constexpr auto succeeded = "Start-up has succeeded.";

    static bool waitForLine(HostProgram &host, const char *line) {
        return waitFor([&] { return host.output().contains(line); }, longestDelay);
    }
    /// Events of the half before the failure shows, and of the half after it.
    static void live(HostProgram &host) {
        host.send("configure env");
        for (int event = 0; event < eventCount; ++event) {
            if (event == eventCount / 2) {
                ASSERT_TRUE(waitForLine(host, failed));
            }
            host.send(u"track test-e%1"_s.arg(event).toUtf8());
        }
    }
    /// Says how many of the events the service has, and fails unless it has each once.
    static void expectAll(FaultRow &row, const ServiceProgram &service) {
        QStringList came =
            testNames(QJsonDocument(service.records()["events"_L1].toArray()).toJson());
        const qsizetype arrivals = came.size();
        came.removeDuplicates();
        EXPECT_EQ(came.size(), eventCount);
        row.add({{eventCount, "events"},
                 {eventCount - came.size(), "lost", 0},
                 {arrivals - came.size(), "came twice", 0}});
    }

    static constexpr auto longestDelay = 60s;
    const QTemporaryDir data;
    const QString database = data.filePath(u"records.sqlite"_s);
};

TEST_F(StartFaults, WithAStoredVisitorTheNextProcessDelivers) {
    FaultRow row("service away at the start, then quit and restart", 120s);
    std::optional<ServiceProgram> service(database);
    const auto run = [this] {
        HostProgram host(data.path());
        host.send(HostProgram::start);
        EXPECT_EQ(host.finish(), 0) << host.output().toStdString();
    };
    run();
    service->stop();
    HostProgram host(data.path());
    live(host);
    EXPECT_EQ(host.finish(), 0);
    service.emplace(database);
    run();
    expectAll(row, *service);
}

TEST_F(StartFaults, TheSameProcessDeliversAsSoonAsTheServiceIsThere) {
    FaultRow row("service away at the start, then there", 120s);
    HostProgram host(data.path());
    live(host);
    const ServiceProgram service(database);
    ASSERT_TRUE(waitForLine(host, succeeded)) << host.output().toStdString();
    host.send("wait-for idle 15000");
    EXPECT_EQ(host.finish(), 0) << host.output().toStdString();
    EXPECT_EQ(host.output().count("Start-up "), 2);
    expectAll(row, service);
}

} // namespace
