#include "tests/faults/FaultRow.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingServer.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Seconds = std::chrono::duration<double>;

/// How long the library waits after each failure.
constexpr std::chrono::seconds backoff[] = {5s, 10s, 30s, 60s};
constexpr auto untilAnswered = 500ms;
constexpr auto longestStop = 7s;
constexpr Seconds tolerance{0.05};
constexpr Seconds slack{1.0};

/// What happens to a host while it waits for its next attempt.
struct Machine {
    QByteArray name;
    /// By how many seconds its wall clock jumps.
    qint64 jump;
    /// How long none of it runs, while the monotonic clock goes on.
    std::chrono::seconds stop;
};

const QList<Machine> machines = {
    {"Forward", 86'400, 0s},
    {"Back", -86'400, 0s},
    // On Linux the monotonic clock stops in sleep, so the wait goes on where it was.
    {"Asleep", 3'600, 2s},
    {"Frozen", 0, longestStop},
};

/// Hosts whose one event the service takes only after so many failures.
class ClockFaults : public ::testing::Test {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable(u"faketime"_s).isEmpty())
            GTEST_SKIP() << "there is no libfaketime here";
        server.setScript([this](const RecordedRequest &request) -> ServerAnswer {
            if (request.target.endsWith("/visitors"))
                return {200, R"({"vid":42,"token":"secret"})"};
            for (const Machine &machine : machines) {
                if (request.body.contains(machine.name) && sends(machine).size() <= failures)
                    return {503, "{}", {}, ServerAnswer::Manner::wholeThenClose};
            }
            return {};
        });
        for (const Machine &machine : machines) {
            setClock(machine, 0);
            hosts.push_back(std::make_unique<HostProgram>(
                file(machine),
                Environment{{u"LD_PRELOAD"_s, u"/usr/$LIB/faketime/libfaketimeMT.so.1"_s},
                            {u"FAKETIME_TIMESTAMP_FILE"_s, file(machine) + u".clock"_s},
                            {u"FAKETIME_NO_CACHE"_s, u"1"_s},
                            {u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0"_s},
                            {u"FAKETIME_DONT_FAKE_MONOTONIC"_s, u"1"_s}}));
            hosts.back()->send(
                "configure env\nwait-for visitor 10000\nwait-for idle 10000\ntrack " +
                machine.name);
        }
    }

    QString file(const Machine &machine) const {
        return data.filePath(QString::fromUtf8(machine.name));
    }
    void setClock(const Machine &machine, qint64 offset) const {
        QSaveFile clock(file(machine) + u".clock"_s);
        ASSERT_TRUE(clock.open(QIODevice::WriteOnly));
        clock.write((offset < 0 ? "" : "+") + QByteArray::number(offset));
        ASSERT_TRUE(clock.commit());
    }
    QList<RecordedRequest> sends(const Machine &machine) const {
        QList<RecordedRequest> sends = server.requests();
        sends.removeIf([&](const auto &request) { return !request.body.contains(machine.name); });
        return sends;
    }
    bool waitForSends(int count) const {
        const auto complete = [&](const auto &machine) {
            return sends(machine).size() >= count;
        };
        return waitFor([&] { return std::ranges::all_of(machines, complete); }, 70s);
    }

    /// Between two attempts of every host.
    void disturb(int wait) {
        pause(untilAnswered);
        for (qsizetype index = 0; index < machines.size(); ++index) {
            setClock(machines[index], machines[index].jump * wait);
            if (machines[index].stop > 0s)
                hosts[index]->program().signal(SIGSTOP);
        }
        for (auto time = 0s; time <= longestStop; time += 1s) {
            for (qsizetype index = 0; index < machines.size(); ++index) {
                if (machines[index].stop == time)
                    hosts[index]->program().signal(SIGCONT);
            }
            pause(1s);
        }
    }
    static void pause(std::chrono::milliseconds time) {
        waitFor([] { return false; }, time);
    }

    const int failures = FaultRow::times(int(std::size(backoff)), 1);
    QTemporaryDir data;
    RecordingServer server{servicePort};
    std::vector<std::unique_ptr<HostProgram>> hosts;
};

TEST_F(ClockFaults, AWallClockThatJumpsNeitherLosesNorHurriesNorDelaysARecord) {
    FaultRow row("clock set by a day, an hour of sleep, a process that is stopped", 150s);
    for (int wait = 1; wait <= failures; ++wait) {
        ASSERT_TRUE(waitForSends(wait));
        disturb(wait);
    }
    ASSERT_TRUE(waitForSends(failures + 1));
    int hurried = 0, delayed = 0;
    Seconds latest{0};
    for (qsizetype index = 0; index < machines.size(); ++index) {
        SCOPED_TRACE(machines[index].name.constData());
        EXPECT_EQ(hosts[index]->finish(), 0);
        const QList<RecordedRequest> all = sends(machines[index]);
        ASSERT_EQ(all.size(), failures + 1);
        for (int wait = 1; wait <= failures; ++wait) {
            const Seconds due =
                std::max<Seconds>(backoff[wait - 1], untilAnswered + machines[index].stop);
            const Seconds late = all[wait].arrival - all[wait - 1].arrival - due;
            hurried += late < -tolerance;
            delayed += late > slack;
            latest = std::max(latest, late);
            // The batch is dated when it is sent, by the clock that was set; the event is not.
            const QJsonObject body = QJsonDocument::fromJson(all[wait].body).object();
            const QJsonObject first = QJsonDocument::fromJson(all[0].body).object();
            EXPECT_EQ(body["events"_L1], first["events"_L1]);
            const Seconds passed = all[wait].arrival - all[0].arrival;
            EXPECT_NEAR(body["timestamp"_L1].toDouble() - first["timestamp"_L1].toDouble(),
                        double(machines[index].jump * wait) + passed.count(), 2);
        }
    }
    EXPECT_EQ(hurried, 0);
    EXPECT_EQ(delayed, 0) << latest.count();
    row.add(machines.size() * failures, "waits disturbed");
    row.add(hurried, "hurried");
    row.add(delayed, "delayed");
    row.add(qint64(latest.count() * 1000), "ms late at most");
}

} // namespace
