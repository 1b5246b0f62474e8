#include "tests/EndToEnd/ScriptedService.h"
#include "tests/faults/FaultRow.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <functional>
#include <numeric>
#include <thread>

#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto stateFile = "SubmissionQueue.json"_L1;
constexpr auto identityFile = "VisitorData.json"_L1;
constexpr auto start = "configure env\nwait-for visitor 10000\nwait-for idle 10000\n";
constexpr int recordsOfAKind = 10;

/// The names that the test gave; the library adds events of its own.
void insertNames(QStringList &names, const QJsonArray &records, QLatin1StringView key) {
    for (const QJsonValue record : records) {
        if (const QString name = record[key].toString(); name.contains(u'-'))
            names.append(name);
    }
}

/// Commands for ten attributes and ten events, each with a name of its own.
QByteArray records(const QByteArray &owner) {
    QByteArray commands;
    for (int number = 0; number < recordsOfAKind; ++number) {
        const QByteArray name = owner + '-' + QByteArray::number(number);
        commands += "attribute a" + name + " v\ntrack e" + name + "\nwait 5\n";
    }
    return commands;
}

class StorageFaults : public ::testing::Test {
protected:
    StorageFaults() {
        server.setScript([](const RecordedRequest &request) -> ServerAnswer {
            if (request.body.contains("\"Unanswered\""))
                return ServerAnswer::badly(ServerAnswer::Manner::hang);
            // So slow that something is under way whenever the process ends.
            std::this_thread::sleep_for(5ms);
            const bool visitor = request.target.endsWith("/visitors") || request.method == "PUT";
            return {200, visitor ? R"({"vid":42,"token":"secret"})" : "{}"};
        });
    }

    QString path(const QString &file = {}) const {
        return data.filePath(u"kestrio-host/Kestrio/"_s + file);
    }
    QByteArray read(QLatin1StringView file) const {
        QFile in(path(file));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }
    /// The object in the file; none where there is no file.
    QJsonObject whole(QLatin1StringView file) const {
        const QByteArray text = read(file);
        const QJsonDocument document = QJsonDocument::fromJson(text);
        EXPECT_TRUE(text.isEmpty() ? !QFileInfo(path(file)).isFile() : document.isObject())
            << file.data() << ": " << text.toStdString();
        return document.object();
    }
    /// What the state file holds. Both files must be whole.
    QStringList stored() const {
        whole(identityFile);
        const QJsonObject state = whole(stateFile);
        QStringList names;
        insertNames(names, state["events"_L1].toArray(), "event"_L1);
        insertNames(names, state["attributes"_L1].toArray(), "key"_L1);
        return names;
    }
    /// How often each record was delivered.
    QMap<QString, int> delivered() const {
        QStringList names;
        for (const RecordedRequest &request : server.requests()) {
            if (request.target.startsWith("/1/visitors/42/attributes/"))
                names.append(QString::fromUtf8(request.target.split('/').last()));
            const QJsonObject body = QJsonDocument::fromJson(request.body).object();
            insertNames(names, body["events"_L1].toArray(), "event"_L1);
        }
        QMap<QString, int> times;
        for (const QString &name : names)
            ++times[name];
        return times;
    }

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
    {
        HostProgram host(data.path());
        host.send(start + records("whole") + "wait-for idle 10000");
        EXPECT_EQ(host.finish(), 0);
    }
    const int longestLife = int(life.elapsed());
    QMap<QString, int> excused;
    QSet<QString> saved;
    for (int kill = 0; kill < kills; ++kill) {
        HostProgram host(data.path());
        host.send(start + records(QByteArray::number(kill)));
        waitFor([] { return false; }, std::chrono::milliseconds(random.bounded(longestLife)));
        host.kill();
        ASSERT_TRUE(waitFor([this] { return server.openConnections() == 0; }));
        const QMap<QString, int> before = delivered();
        for (const QString &name : stored()) {
            saved.insert(name);
            excused[name] += before.contains(name) ? 1 : 0;
        }
    }
    HostProgram host(data.path());
    host.send(start);
    EXPECT_EQ(host.finish(), 0);
    const QMap<QString, int> times = delivered();
    int lost = 0;
    for (const QString &name : saved)
        lost += times.contains(name) ? 0 : 1;
    int again = 0;
    int tooOften = 0;
    for (auto entry = times.begin(); entry != times.end(); ++entry) {
        again += entry.value() - 1;
        tooOften += entry.value() > 1 + excused.value(entry.key()) ? 1 : 0;
        saved.insert(entry.key());
    }
    EXPECT_EQ(lost, 0);
    EXPECT_EQ(tooOften, 0);
    row.add(kills, "kills");
    row.add(excused.size(), "records in the file at a kill");
    row.add(lost, "of them lost");
    row.add(again, "deliveries again");
    row.add(2 * recordsOfAKind * (kills + 1) - saved.size(), "neither saved nor sent at the kill");
    row.add(QDir(path()).entryList(QDir::Files).size() - 2, "files left behind");
}

/// A disk of the test's own under a folder, and what can go wrong with it.
class SmallDisk {
public:
    explicit SmallDisk(const QString &folder) : m_folder(folder) {}
    ~SmallDisk() { umount2(folder(), MNT_DETACH); }
    Q_DISABLE_COPY_MOVE(SmallDisk)

    bool mount(unsigned long flags = 0) const {
        return ::mount("tmpfs", folder(), "tmpfs", flags, "size=256k") == 0;
    }
    bool fill() const {
        QFile filler(m_folder + u"/filler"_s);
        return filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
               filler.write(QByteArray(1024 * 1024, 'x')) < 1024 * 1024;
    }
    bool empty() const { return QFile::remove(m_folder + u"/filler"_s); }

private:
    const char *folder() const { return m_utf8.constData(); }

    QString m_folder;
    QByteArray m_utf8 = m_folder.toUtf8();
};

bool limitFiles(HostProgram &host, rlim_t size) {
    const rlimit limit{size, RLIM_INFINITY};
    return prlimit(pid_t(host.program().processId()), RLIMIT_FSIZE, &limit, nullptr) == 0;
}

TEST_F(StorageFaults, GoesOnDeliveringAndSavesAgainOnceTheStorageIsBack) {
    using Step = std::function<bool(HostProgram &)>;
    const QString folder = path();
    const QStringList files{path(stateFile), path(identityFile)};
    const auto own = [](const QStringList &paths, uid_t user) {
        return std::ranges::all_of(paths, [user](const QString &path) {
            return chown(qPrintable(path), user, gid_t(-1)) == 0;
        });
    };
    constexpr uid_t somebody = 65534;
    const SmallDisk disk(data.path());
    const struct {
        const char *name;
        Step strike;
        Step mend;
    } faults[] = {
        {"full", [&](auto &) { return disk.fill(); },
         [&](auto &) {
             return disk.empty();
         }},
        {"limited", [](auto &host) { return limitFiles(host, 0); },
         [](auto &host) {
             return limitFiles(host, RLIM_INFINITY);
         }},
        {"read-only", [&](auto &) { return disk.mount(MS_REMOUNT | MS_RDONLY); },
         [&](auto &) {
             return disk.mount(MS_REMOUNT);
         }},
        {"a-file-for-the-folder",
         [&](auto &) {
             return QDir(folder).removeRecursively() &&
                    QFile(folder.chopped(1)).open(QIODevice::WriteOnly);
         },
         [&](auto &) {
             return QFile::remove(folder.chopped(1)) && QDir().mkpath(folder);
         }},
        {"folders-for-the-files",
         [&](auto &) {
             return std::ranges::all_of(
                 files, [](auto &file) { return QFile::remove(file) && QDir().mkdir(file); });
         },
         [&](auto &) {
             return std::ranges::all_of(files, [](auto &file) { return QDir().rmdir(file); });
         }},
        {"the-files-are-somebody's", [&](auto &) { return own(files, somebody); },
         [&](auto &) {
             return own(files, 0);
         }},
        {"all-is-somebody's", [&](auto &) { return own(files + QStringList(folder), somebody); },
         [&](auto &) {
             return own(files + QStringList(folder), 0);
         }},
    };
    FaultRow row("storage that fails", 120s);
    std::signal(SIGXFSZ, SIG_IGN); // the host inherits it; otherwise the system ends it
    for (const auto &[name, strike, mend] : faults) {
        SCOPED_TRACE(name);
        const SmallDisk mounted(data.path());
        if (!mounted.mount())
            GTEST_SKIP() << "no disk can be mounted here";
        // Root, to whom permissions apply.
        const QStringList launcher{u"setpriv"_s,
                                   u"--bounding-set=-dac_override,-dac_read_search,-fowner"_s};
        HostProgram host(data.path(), {}, launcher);
        const QByteArray records = QByteArray("attribute #-") + name + " v\n";
        const auto say = [&](const char *moment) {
            return QByteArray(records).replace('#', moment);
        };
        host.send(QByteArray(start) + "visitor");
        EXPECT_EQ(host.nextReport()["visitor"_L1], 42);
        ASSERT_TRUE(strike(host));
        host.send("track Unanswered\n" + say("during") + "wait 100\nvisitor");
        EXPECT_EQ(host.nextReport()["visitor"_L1], 42) << host.program().output().toStdString();
        EXPECT_FALSE(read(stateFile).contains("Unanswered")) << "the fault is none";
        stored();
        HostProgram next(data.path(), {}, launcher);
        next.send(start + say("next") + "wait-for idle 10000");
        EXPECT_EQ(next.finish(), 0) << next.program().output().toStdString();
        ASSERT_TRUE(mend(host));
        host.send("user somebody\n" + say("after"));
        EXPECT_TRUE(waitFor([&] { return read(stateFile).contains("Unanswered"); }, 5s));
        EXPECT_TRUE(waitFor([&] { return read(identityFile).contains("somebody"); }, 5s));
        stored();
    }
    const QMap<QString, int> times = delivered();
    const int cases = int(std::size(faults));
    EXPECT_EQ(times.size(), 3 * cases);
    EXPECT_EQ(times.values().count(1), 3 * cases);
    row.add(cases, "faults");
    row.add(3 * cases, "records");
    row.add(3 * cases - times.size(), "lost");
}

TEST_F(StorageFaults, MakesTheFolderAgainThatSomebodyRemoved) {
    FaultRow row("folder removed under the process", 30s);
    HostProgram host(data.path());
    host.send(QByteArray(start) + "visitor");
    EXPECT_EQ(host.nextReport()["visitor"_L1], 42);
    ASSERT_TRUE(QDir(path()).removeRecursively());
    host.send("track Unanswered\nattribute key v\nuser somebody");
    EXPECT_TRUE(waitFor([&] { return read(stateFile).contains("Unanswered"); }));
    EXPECT_TRUE(waitFor([&] { return read(identityFile).contains("somebody"); }));
    row.add(1, "record");
    row.add(0, "lost");
}

TEST_F(StorageFaults, TwoProcessesOnOneFolderDeliverEachItsOwn) {
    FaultRow row("two processes on one folder", 120s);
    const int rounds = FaultRow::times(20, 2);
    int reads = 0;
    for (int round = 0; round < rounds; ++round) {
        HostProgram hosts[]{HostProgram(data.path()), HostProgram(data.path())};
        for (HostProgram &host : hosts) {
            host.send(start + records(QByteArray::number(2 * round + (&host - hosts))) +
                      "wait-for idle 10000");
            host.program().endInput();
        }
        const auto ended = [&](HostProgram &host) {
            ++reads;
            stored();
            return host.program().waitForEnd(0ms) == 0;
        };
        EXPECT_TRUE(waitFor([&] { return std::ranges::all_of(hosts, ended); }));
    }
    const QMap<QString, int> times = delivered();
    const int given = 4 * recordsOfAKind * rounds;
    EXPECT_EQ(times.size(), given);
    const QList<int> counts = times.values();
    row.add(2 * rounds, "processes");
    row.add(given, "records");
    row.add(given - times.size(), "lost");
    row.add(std::accumulate(counts.begin(), counts.end(), 0) - given, "deliveries again");
    row.add(reads, "looks at the files");
}

} // namespace
