#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "tests/faults/FaultRow.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSet>
#include <QTemporaryDir>

#include <csignal>
#include <deque>
#include <numeric>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto stateFile = "SubmissionQueue.json"_L1;
constexpr auto identityFile = "VisitorData.json"_L1;
constexpr int recordsOfAKind = 10;

/// Commands for ten attributes and ten events, each with a name of its own.
QByteArray records(const QString &owner) {
    QString commands;
    for (int number = 0; number < recordsOfAKind; ++number)
        commands +=
            u"attribute test-a%1-%2 v\ntrack test-e%1-%2\nwait 5\n"_s.arg(owner).arg(number);
    return commands.toUtf8();
}

class StorageFaults : public ::testing::Test {
protected:
    StorageFaults() {
        server.setScript([this](const RecordedRequest &request) -> ServerAnswer {
            const QStringList names = namesIn(request);
            if (request.body.contains("\"Unanswered\"") || (isAway && !names.isEmpty())) {
                unanswered.mutate([&](QStringList &all) { all += names; });
                return ServerAnswer::badly(ServerAnswer::Manner::hang);
            }
            // So slow that something is under way whenever the process ends.
            std::this_thread::sleep_for(5ms);
            const bool visitor = request.target.endsWith("/visitors") || request.method == "PUT";
            return {200, visitor ? R"({"vid":42,"token":"secret"})" : "{}"};
        });
    }

    static QStringList namesIn(const RecordedRequest &request) {
        return testNames(request.target + ' ' + request.body);
    }
    QString path(QLatin1StringView file = {}) const {
        return data.filePath(u"kestrio-host/Kestrio/"_s + file);
    }
    /// Its text, which must be whole; empty where there is no file.
    QByteArray read(QLatin1StringView file) const {
        QFile in(path(file));
        const QByteArray text = in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
        EXPECT_EQ(QJsonDocument::fromJson(text).isObject(), in.isOpen())
            << file.data() << ": " << text.toStdString();
        return text;
    }
    /// The records in the state files of all processes. All files must be whole.
    QStringList stored() const {
        read(identityFile);
        QStringList names;
        for (const QString &file : QDir(path()).entryList({u"SubmissionQueue*.json"_s}))
            names += testNames(read(QLatin1StringView(file.toLatin1())));
        return names;
    }
    /// How often each record was delivered.
    QMap<QString, int> delivered() const {
        QMap<QString, int> times;
        for (const RecordedRequest &request : server.requests()) {
            for (const QString &name : namesIn(request))
                ++times[name];
        }
        for (const QString &name : unanswered.value()) {
            if (--times[name] <= 0)
                times.remove(name);
        }
        return times;
    }

    /// A host's whole life.
    void finishHost(const QByteArray &commands) const {
        HostProgram host(data.path());
        host.send(HostProgram::start + commands);
        EXPECT_EQ(host.finish(), 0);
    }
    /// Waits until every one of the names was delivered or stored.
    bool waitForSafe(const QStringList &names) {
        return waitFor([&] {
            ++looks;
            const QStringList safe = stored() + delivered().keys();
            return std::ranges::all_of(names, [&](auto &name) { return safe.contains(name); });
        });
    }
    /// Has processes that share the folder and save promptly make records, which it returns, and
    /// end one after another or be killed. The next process delivers.
    QStringList liveTogether(const QStringList &names, bool away, const QList<bool> &areKilled) {
        std::deque<HostProgram> hosts;
        for (qsizetype number = 0; number < names.size(); ++number) {
            HostProgram &host = hosts.emplace_back(data.path());
            host.send("prompt-saves on\n" + HostProgram::start + "visitor");
            EXPECT_EQ(host.nextReport()["visitor"_L1], 42);
        }
        isAway = away;
        for (qsizetype number = 0; number < names.size(); ++number)
            hosts[std::size_t(number)].send(records(names[number]));
        // Either of them owns the stored state.
        QStringList all;
        for (qsizetype number = 0; number < names.size(); ++number) {
            const QStringList own = testNames(records(names[number]));
            EXPECT_TRUE(waitForSafe(own));
            all += own;
            if (areKilled[number])
                hosts.front().kill();
            else
                EXPECT_EQ(hosts.front().finish(), 0);
            hosts.pop_front();
        }
        isAway = false;
        EXPECT_TRUE(waitFor([this] { return server.openConnections() == 0; }));
        excuseStored();
        finishHost({});
        return all;
    }
    /// Counts a further delivery of what is stored although the service has it.
    void excuseStored() {
        const QMap<QString, int> before = delivered();
        for (const QString &name : stored())
            excused[name] += before.contains(name) ? 1 : 0;
    }
    /// What became of all, and of those that must not be lost.
    void addOutcome(FaultRow &row, const QStringList &promised, const QByteArray &what) {
        const QMap<QString, int> times = delivered();
        const QStringList sent = times.keys();
        const auto isLost = [&](const QString &name) {
            return !times.contains(name);
        };
        const auto isTooOften = [&](const QString &name) {
            return times[name] > 1 + excused.value(name);
        };
        row.add({{promised.size(), what},
                 {std::ranges::count_if(promised, isLost), "of them lost", 0},
                 {std::accumulate(times.begin(), times.end(), 0) - sent.size(), "deliveries again"},
                 {std::ranges::count_if(sent, isTooOften), "of them without need", 0},
                 {QDir(path()).entryList({u"*.lock"_s, u"SubmissionQueue-*"_s}).size(),
                  "files left behind", 0}});
    }

    /// Whether the service takes no records, and keeps those who send them waiting.
    std::atomic<bool> isAway = false;
    Atomic<QStringList> unanswered;
    QMap<QString, int> excused;
    int looks = 0;
    QTemporaryDir data;
    RecordingServer server{servicePort};
};

TEST_F(StorageFaults, KilledWhileItSavesLosesNothingThatWasSaved) {
    FaultRow row("killed while it saves", 300s);
    const quint32 seed = QRandomGenerator::global()->generate();
    SCOPED_TRACE(seed);
    QRandomGenerator random(seed);
    const int kills = FaultRow::times(200, 10);
    QElapsedTimer life;
    life.start();
    finishHost(records(u"whole"_s) + "wait-for idle 60000");
    const int longestLife = int(life.elapsed());
    for (int kill = 0; kill < kills; ++kill) {
        HostProgram host(data.path());
        host.send(HostProgram::start + records(QString::number(kill)));
        pause(random.bounded(longestLife) * 1ms);
        host.kill();
        ASSERT_TRUE(waitFor([this] { return server.openConnections() == 0; }));
        excuseStored();
    }
    finishHost({});
    row.add({{kills, "kills"}});
    addOutcome(row, excused.keys(), "records in the file at a kill");
    const qsizetype given = 2 * recordsOfAKind * (kills + 1);
    row.add({{given - delivered().size(), "neither saved nor sent at the kill"}});
}

/// Storage that fails, and what mends it: commands to a disk of the test's own, where $DISK is the
/// disk, $FOLDER and $FILES are the library's, and $PID is its process.
struct StorageFault {
    const char *name;
    const char *strike;
    const char *mend;
};

const StorageFault storageFaults[] = {
    {"full", "! head -c 1M /dev/zero 2>/dev/null >$DISK/filler", "rm $DISK/filler"},
    {"limited", "prlimit --pid $PID --fsize=0:", "prlimit --pid $PID --fsize=unlimited:"},
    // A mount of its own: what a process has open to write keeps the disk's from becoming one.
    {"read-only", "mount --bind $DISK $DISK && mount -o remount,bind,ro $DISK", "umount -l $DISK"},
    // What the library has to make again, once it can.
    {"removed", "rm -r $FOLDER && touch $FOLDER", "rm $FOLDER"},
    {"folders-for-the-files", "rm $FILES && mkdir $FILES", "rmdir $FILES"},
    {"the-files-are-foreign", "chown nobody $FILES", "chown root $FILES"},
    {"all-is-foreign", "chown nobody $FILES $FOLDER", "chown root $FILES $FOLDER"},
};

TEST_F(StorageFaults, GoesOnDeliveringAndSavesAgainOnceTheStorageIsBack) {
    FaultRow row("storage that fails", 120s);
    std::signal(SIGXFSZ, SIG_IGN); // the host inherits it; otherwise the system ends it
    // Root, to whom permissions apply.
    const QStringList launcher{u"setpriv"_s,
                               u"--bounding-set=-dac_override,-dac_read_search,-fowner"_s};
    for (const auto &[name, strike, mend] : storageFaults) {
        SCOPED_TRACE(name);
        if (!shell(data.path(), u"mount -t tmpfs -o size=256k tmpfs ."_s))
            GTEST_SKIP() << "no disk can be mounted here";
        const auto unmount = qScopeGuard([this] { shell(data.path(), u"umount -l ."_s); });
        HostProgram host(data.path(), {}, launcher);
        const auto say = [&](const char *moment) {
            return "attribute test-" + QByteArray(moment) + '-' + name + " v\n";
        };
        const auto run = [&](const char *commands) {
            const QString all = u"DISK=%1; PID=%2; FILES='%3 %4'; FOLDER=%5; %6"_s;
            return shell(data.path(), all.arg(data.path())
                                          .arg(host.processId())
                                          .arg(path(stateFile), path(identityFile),
                                               path().chopped(1), QString::fromLatin1(commands)));
        };
        host.send(HostProgram::start + "visitor");
        EXPECT_EQ(host.nextReport()["visitor"_L1], 42);
        // Idle, it may still be saving what it did before.
        ASSERT_TRUE(waitFor([&] { return !read(stateFile).isEmpty(); }));
        ASSERT_TRUE(run(strike));
        host.send("track Unanswered\n" + say("during") + "wait 100\nvisitor");
        EXPECT_EQ(host.nextReport()["visitor"_L1], 42) << host.output().toStdString();
        EXPECT_FALSE(read(stateFile).contains("Unanswered")) << "the fault is none";
        stored();
        HostProgram next(data.path(), {}, launcher);
        next.send(HostProgram::start + say("next") + "wait-for idle 60000");
        EXPECT_EQ(next.finish(), 0) << next.output().toStdString();
        ASSERT_TRUE(run(mend));
        host.send("user somebody\n" + say("after"));
        EXPECT_TRUE(waitFor([&] { return read(stateFile).contains("Unanswered"); }));
        EXPECT_TRUE(waitFor([&] { return read(identityFile).contains("somebody"); }));
        stored();
    }
    const QMap<QString, int> times = delivered();
    const qsizetype given = 3 * std::ssize(storageFaults);
    EXPECT_EQ(times.values().count(1), given);
    row.add({{std::ssize(storageFaults), "faults"},
             {given, "records"},
             {given - times.size(), "lost", 0}});
}

TEST_F(StorageFaults, KilledAfterItSavedPromptlyLosesNothing) {
    FaultRow row("killed after prompt saves", 120s);
    const int kills = FaultRow::times(50, 3);
    QStringList promised;
    for (int kill = 0; kill < kills; ++kill)
        promised += liveTogether({QString::number(kill)}, true, {true});
    row.add({{kills, "kills"}});
    addOutcome(row, promised, "records");
}

TEST_F(StorageFaults, TwoProcessesOnOneFolderLoseNothingHoweverTheyEnd) {
    FaultRow row("two processes on one folder", 120s);
    const int rounds = FaultRow::times(40, 8);
    QStringList promised;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        const QString name = QString::number(round);
        promised += liveTogether({name + u'a', name + u'b'}, (round & 1) != 0,
                                 {(round & 2) != 0, (round & 4) != 0});
    }
    row.add({{2 * rounds, "processes"}, {looks, "looks at the files"}});
    addOutcome(row, promised, "records");
}

} // namespace
