#include "KestrioKit/Queue/SubmissionQueue.h"

#include "KestrioKit/Platform/Storage.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/ScriptedSender.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <future>
#include <thread>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using enum ReachabilityFlag;

namespace {

Request::TrackEvent event(const QString &name) {
    return {.event = name, .metadata = {}};
}

Request::UpdateAttribute attribute(const QString &key) {
    return {key, u"value"_s};
}

QByteArray storedEvent(const QByteArray &name) {
    return "{\"event\":\"" + name + "\",\"metadata\":{},\"delayed\":false,\"timestamp\":0}";
}

/// The state file of visitor 8 with these events and attributes.
QByteArray stateText(const QByteArrayList &events, const QByteArrayList &attributes = {}) {
    QByteArrayList storedEvents;
    for (const QByteArray &name : events)
        storedEvents.append(storedEvent(name));
    QByteArrayList storedAttributes;
    for (const QByteArray &key : attributes)
        storedAttributes.append("{\"key\":\"" + key + "\",\"value\":\"value\"}");
    return "{\"version\":3,\"vid\":8,\"token\":\"token\",\"events\":[" + storedEvents.join(',') +
           "],\"surveys\":[],\"errors\":[],\"history\":[],\"attributes\":[" +
           storedAttributes.join(',') + "]}";
}

class SubmissionQueueTest : public LibraryFixture {
protected:
    void make() { queue = SubmissionQueue::make(sender, context()); }
    void append(QueueableRequest request) { queue->appendRequest(std::move(request)); }
    void save() {
        queue->save();
        settle();
    }

    static QString fileName() { return *Storage::localLibraryURL("SubmissionQueue"_L1); }
    static QByteArray file() {
        QFile stored(fileName());
        return stored.open(QIODevice::ReadOnly) ? stored.readAll() : QByteArray("none");
    }
    static void putFile(const QByteArray &text) {
        QFile stored(fileName());
        ASSERT_TRUE(stored.open(QIODevice::WriteOnly));
        stored.write(text);
    }

    std::shared_ptr<ScriptedSender> sender = std::make_shared<ScriptedSender>(clock);
    std::shared_ptr<SubmissionQueue> queue;
};

} // namespace

TEST_F(SubmissionQueueTest, StoresWhatWaitsExceptBulkChanges) {
    flagsSource->change({});
    make();
    append(attribute(u"plan"_s));
    append(Request::UpdateAttributes{{{u"a"_s, u"b"_s}}});
    append(Request::RemoveAttributes{{u"a"_s}});
    append(Request::SurveyEvent{});
    append(Request::RecordError{});
    append(Request::SurveyResponse{});
    append(event(u"first"_s));
    append(event(u"second"_s));
    EXPECT_EQ(file(), "none");
    save();
    const QByteArray others =
        "\"surveys\":[{\"surveyId\":0,\"body\":{\"responses\":[],\"meta\":{},"
        "\"responseGroupUid\":\"\"},\"completedAt\":0.0}],"
        "\"errors\":[{\"envId\":\"\",\"userAgent\":\"\",\"meta\":{},\"err\":{\"message\":\"\"}}],"
        "\"history\":[{\"eid\":\"\",\"sid\":0,\"vid\":0,\"isNew\":false,\"action\":\"seen\","
        "\"responseGroupUid\":\"\"}]";
    EXPECT_EQ(file(), stateText({"first", "second"}, {"plan"})
                          .replace("\"surveys\":[],\"errors\":[],\"history\":[]", others));
    EXPECT_FALSE(QFile::permissions(fileName()) & (QFile::ReadGroup | QFile::ReadOther));
    EXPECT_EQ(sender->sends(), 0);
}

TEST_F(SubmissionQueueTest, SendsWhatTheFileHoldsBeforeWhatIsNew) {
    putFile(stateText({"first", "second", "third"}, {"plan"}));
    std::promise<void> slowDisk;
    thread.post([&slowDisk] { slowDisk.get_future().wait(); });
    make();
    append(event(u"new"_s));
    slowDisk.set_value();
    settle();
    EXPECT_EQ(sender->out(), (QStringList{u"first,second,third,new"_s, u"plan"_s}));
    sender->answer(200);
    settle();
    EXPECT_EQ(file(), stateText({}, {"plan"}));
    sender->answer(503);
    settle();
    EXPECT_EQ(file(), stateText({}, {"plan"}));
    advance(5);
    sender->answer(400);
    settle();
    EXPECT_EQ(file(), stateText({}));
    EXPECT_EQ(sender->sends(), 3);
}

TEST_F(SubmissionQueueTest, IgnoresAFileOfOthersOrInDisorder) {
    const QByteArray whole = stateText({"stored"});
    const auto changed = [&whole](const char *before, const char *after) {
        return QByteArray(whole).replace(before, after);
    };
    const QByteArray texts[] = {
        changed("\"version\":3", "\"version\":2"),
        changed("\"vid\":8", "\"vid\":7"),
        changed("\"vid\":8,", ""),
        changed("\"surveys\":[],", ""),
        changed("\"timestamp\":0", "\"timestamp\":\"now\""),
        changed("\"errors\":[]", "\"errors\":[[]]"),
        "",
        whole.chopped(1),
        "what is this?",
        "[3]",
        QByteArray(100'000, '['),
    };
    for (const QByteArray &text : texts) {
        SCOPED_TRACE(text.left(100).constData());
        putFile(text);
        make();
        settle();
        EXPECT_EQ(sender->sends(), 0);
        save();
        EXPECT_EQ(file(), stateText({}));
    }
    ASSERT_TRUE(QFile::remove(fileName()) && QDir().mkpath(fileName()));
    make();
    append(event(u"new"_s));
    save();
    EXPECT_EQ(sender->out(), QStringList(u"new"_s));
}

TEST_F(SubmissionQueueTest, SavesWhatIsOutWithTheApplicationsStateToo) {
    make();
    append(event(u"out"_s));
    settle();
    append(event(u"waiting"_s));
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    settle();
    EXPECT_EQ(file(), stateText({"waiting", "out"}));
    sender->answer(200);
    settle();
    EXPECT_EQ(file(), stateText({"waiting"}));
    queue.reset();
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    settle();
}

TEST_F(SubmissionQueueTest, AnotherVisitorEmptiesItButForWhatComesAfter) {
    make();
    append(event(u"out"_s));
    settle();
    append(event(u"waiting"_s));
    save();
    const QByteArray stored = file();
    queue->updateAuth(8, u"newer"_s);
    settle();
    EXPECT_EQ(file(), stored);
    save();
    EXPECT_EQ(file(), QByteArray(stored).replace(":\"token\"", ":\"newer\""));

    queue->updateAuth(9, u"other"_s);
    settle();
    EXPECT_EQ(file(), "none");
    queue->updateAuth(std::nullopt, std::nullopt);
    append(event(u"after"_s));
    save();
    const QByteArray nobody = "\"vid\":8,\"token\":\"token\",";
    EXPECT_EQ(file(), stateText({"after"}).replace(nobody, ""));
    sender->answer(503);
    settle();
    EXPECT_EQ(sender->out(), QStringList(u"after"_s));
}

TEST_F(SubmissionQueueTest, PausesWhileTheNetworkIsGone) {
    make();
    flagsSource->change({});
    settle();
    append(event(u"a"_s));
    settle();
    EXPECT_EQ(sender->sends(), 0);
    flagsSource->change(reachable);
    settle();
    EXPECT_EQ(sender->out(), QStringList(u"a"_s));
    sender->answer(200);

    sender->setDisabledError(DisabledError{DisabledError::version, {}});
    flagsSource->change({});
    settle();
    append(event(u"b"_s));
    flagsSource->change(reachable);
    settle();
    EXPECT_EQ(sender->sends(), 1);
    sender->setDisabledError(std::nullopt);
    append(attribute(u"c"_s));
    settle();
    QStringList out = sender->out();
    out.sort();
    EXPECT_EQ(out, (QStringList{u"b"_s, u"c"_s}));
}

TEST_F(SubmissionQueueTest, KeepsRecordsWithoutAMonitor) {
    LibraryContext blind = context();
    blind.makeFlagsSource = [](const QString &) {
        return ENOSYS;
    };
    queue = SubmissionQueue::make(sender, blind);
    append(event(u"a"_s));
    save();
    EXPECT_EQ(sender->handledErrors().size(), 1);
    EXPECT_EQ(sender->sends(), 0);
    EXPECT_EQ(file(), stateText({"a"}));
}

TEST_F(SubmissionQueueTest, DropsNewRequestsWithoutNetworkAccess) {
    make();
    queue->setDisableNetworkAccess(true);
    append(event(u"a"_s));
    queue->appendRequest(makeQueueTask(event(u"b"_s), clock));
    queue->setDisableNetworkAccess(false);
    append(event(u"c"_s));
    settle();
    EXPECT_EQ(sender->out(), QStringList(u"c"_s));
}

TEST_F(SubmissionQueueTest, IsIdleWhileAllWaitForTheirNextAttempt) {
    make();
    QString reports;
    const auto ask = [&] {
        queue->reportIdle([&reports](bool idle) { reports += idle ? u'i' : u'b'; });
        settle();
    };
    ask();
    append(event(u"a"_s));
    ask();
    sender->answer(503);
    ask();
    EXPECT_EQ(reports, u"ibi"_s);
}

TEST_F(SubmissionQueueTest, TakesThousandsOfRequestsFromSeveralThreads) {
    make();
    sender->answerAtOnce(200);
    std::vector<std::thread> hosts;
    for (int host = 0; host < 4; ++host) {
        hosts.emplace_back([this, host] {
            for (int number = 0; number < 1000; ++number) {
                append(attribute(u"plan"_s));
                append(event(u"a"_s));
                if (number % 100 == 0)
                    queue->updateAuth(host, std::nullopt);
            }
        });
    }
    for (std::thread &host : hosts)
        host.join();
    queue->updateAuth(8, u"token"_s);
    settle();
    const int sends = sender->sends();
    append(event(u"last"_s));
    settle();
    EXPECT_EQ(sender->sends(), sends + 1);
    EXPECT_EQ(file(), stateText({}));
}

} // namespace KestrioKit
