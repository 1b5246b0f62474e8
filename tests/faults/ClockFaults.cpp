#include "tests/faults/FaultRow.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingServer.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

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
constexpr qint64 mostEarly = 50; // ms

/// A host, and what happens to it while it waits for its next attempt.
struct Machine {
    QByteArray name;
    /// By how many seconds its wall clock jumps.
    qint64 jump;
    /// How long none of it runs, while the monotonic clock goes on.
    std::chrono::seconds stop;
    std::unique_ptr<HostProgram> host = nullptr;
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
            const bool fails = std::ranges::any_of(machines, [&](const Machine &machine) {
                return request.body.contains(machine.name) && sends(machine).size() <= failures;
            });
            return fails ? ServerAnswer{503, "{}", {}, ServerAnswer::Manner::wholeThenClose}
                         : ServerAnswer{};
        });
        for (Machine &machine : machines) {
            const QString file = data.filePath(QString::fromUtf8(machine.name));
            setClock(machine, 0);
            machine.host = std::make_unique<HostProgram>(
                file, Environment{{u"LD_PRELOAD"_s, u"/usr/$LIB/faketime/libfaketimeMT.so.1"_s},
                                  {u"FAKETIME_TIMESTAMP_FILE"_s, file + u".clock"_s},
                                  {u"FAKETIME_NO_CACHE"_s, u"1"_s},
                                  {u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0"_s},
                                  {u"FAKETIME_DONT_FAKE_MONOTONIC"_s, u"1"_s}});
            machine.host->send(HostProgram::start + "track " + machine.name);
        }
    }

    void setClock(const Machine &machine, qint64 offset) const {
        const QString sign = offset < 0 ? u""_s : u"+"_s;
        const QString name = QString::fromUtf8(machine.name);
        ASSERT_TRUE(shell(data.path(),
                          u"echo %1%2 >new && mv new %3.clock"_s.arg(sign).arg(offset).arg(name)));
    }
    QList<RecordedRequest> sends(const Machine &machine) const {
        QList<RecordedRequest> sends = server.requests();
        sends.removeIf([&](const auto &request) { return !request.body.contains(machine.name); });
        return sends;
    }
    bool waitForSends(int count) const {
        const auto complete = [&](const Machine &machine) {
            return sends(machine).size() >= count;
        };
        return waitFor([&] { return std::ranges::all_of(machines, complete); },
                       backoff[3] + patience);
    }
    /// Between two attempts of every host.
    void disturb(int wait) {
        pause(untilAnswered);
        for (const Machine &machine : machines) {
            setClock(machine, machine.jump * wait);
            machine.host->signal(SIGSTOP);
            QTimer::singleShot(machine.stop, Qt::PreciseTimer, qApp,
                               [&] { machine.host->signal(SIGCONT); });
        }
        pause(longestStop + untilAnswered);
    }

    /// A busy machine is late as well, but not by the hour or the day by which a clock is set.
    const std::chrono::seconds mostLate = FaultRow::isFull() ? 3s : 60s;
    const int failures = FaultRow::times(int(std::size(backoff)), 1);
    QTemporaryDir data;
    RecordingServer server{servicePort};
    Machine machines[4] = {
        {"Forward", 86'400, 0s},
        {"Back", -86'400, 0s},
        // On Linux the monotonic clock stops in sleep, so the wait goes on where it was.
        {"Asleep", 3'600, 2s},
        {"Frozen", 0, longestStop},
    };
};

TEST_F(ClockFaults, AWallClockThatJumpsNeitherLosesNorHurriesNorDelaysARecord) {
    FaultRow row("clock set by a day, an hour of sleep, a process that is stopped", 150s);
    for (int wait = 1; wait <= failures; ++wait) {
        ASSERT_TRUE(waitForSends(wait));
        disturb(wait);
    }
    ASSERT_TRUE(waitForSends(failures + 1));
    qint64 earliest = 0, latest = 0;
    for (const Machine &machine : machines) {
        SCOPED_TRACE(machine.name.constData());
        EXPECT_EQ(machine.host->finish(), 0);
        const QList<RecordedRequest> all = sends(machine);
        ASSERT_EQ(all.size(), failures + 1);
        const QJsonObject first = QJsonDocument::fromJson(all[0].body).object();
        for (int wait = 1; wait <= failures; ++wait) {
            const Seconds due = std::max<Seconds>(backoff[wait - 1], untilAnswered + machine.stop);
            const Seconds late = all[wait].arrival - all[wait - 1].arrival - due;
            earliest = std::min(earliest, qint64(late / 1ms));
            latest = std::max(latest, qint64(late / 1ms));
            // The batch is dated when it is sent, by the clock that was set; the event is not.
            const QJsonObject body = QJsonDocument::fromJson(all[wait].body).object();
            EXPECT_EQ(body["events"_L1], first["events"_L1]);
            const Seconds passed = all[wait].arrival - all[0].arrival;
            EXPECT_NEAR(body["timestamp"_L1].toDouble() - first["timestamp"_L1].toDouble(),
                        double(machine.jump * wait) + passed.count(), double(mostLate.count()));
        }
    }
    row.add({{std::ssize(machines) * failures, "waits disturbed"},
             {-earliest, "ms early at most", mostEarly},
             {latest, "ms late at most", mostLate / 1ms}});
}

} // namespace
