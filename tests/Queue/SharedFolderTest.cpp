#include "tests/Queue/QueueTest.h"

#include <QDir>
#include <QFileInfo>

namespace KestrioKit {

/// Two queues on one folder, as two processes have them, of which `queue` comes first.
class SharedFolderTest : public QueueTest {
protected:
    void SetUp() override {
        flagsSource->change({});
        make();
        settle();
        second = SubmissionQueue::make(sender, context());
        settle();
    }
    void appendAndSave(SubmissionQueue &target, const QString &event, int count = 1) {
        for (int number = 0; number < count; ++number)
            target.appendRequest(Request::TrackEvent{event, {}});
        target.save();
        settle();
    }
    QStringList files() const {
        return QFileInfo(fileName).dir().entryList({u"*.json"_s}, QDir::Files);
    }
    QString sideFile() const { return QFileInfo(fileName).dir().filePath(files().value(0)); }

    static constexpr double searchInterval = SubmissionQueue::searchInterval.count();
    std::shared_ptr<SubmissionQueue> second;
};

TEST_F(SharedFolderTest, WhatOneProcessLeavesTheOtherTakesOrTheNextStart) {
    enum Moment { firstEnds, secondEnds, bothEnd };
    const std::pair<Moment, QByteArray> rows[] = {{firstEnds, stateText({"b", "a"})},
                                                  {secondEnds, stateText({"a", "b"})},
                                                  {bothEnd, stateText({"a", "b"})}};
    for (const auto &[moment, merged] : rows) {
        SCOPED_TRACE(moment);
        appendAndSave(*queue, u"a"_s);
        appendAndSave(*second, u"b"_s);
        EXPECT_EQ(file(), stateText({"a"}));
        EXPECT_EQ(files().size(), 2);
        if (moment != secondEnds)
            queue.reset();
        if (moment != firstEnds)
            second.reset();
        if (moment == bothEnd)
            make();
        advance(searchInterval);
        if (moment == secondEnds)
            queue->save();
        settle();
        EXPECT_EQ(file(), merged);
        EXPECT_EQ(files(), QStringList(u"SubmissionQueue.json"_s));
        queue.reset();
        second.reset();
        QFile::remove(fileName);
        SetUp();
    }
}

TEST_F(SharedFolderTest, RecordsThatDoNotFitWaitAndAreSentOnce) {
    appendAndSave(*queue, u"a"_s, 20);
    appendAndSave(*second, u"b"_s, 20);
    second.reset();
    queue.reset();
    make();
    settle();
    EXPECT_EQ(files().size(), 2);
    sender->answerAtOnce(200);
    flagsSource->change(ReachabilityFlag::reachable);
    settle();
    advance(searchInterval);
    EXPECT_EQ(sender->sends(), 2);
    EXPECT_EQ(file(), stateText({}));
    EXPECT_EQ(files().size(), 1);
}

TEST_F(SharedFolderTest, OtherVisitorsRecordsAreKeptAWhileAndGoAtLogout) {
    second->updateAuth(7, u"token"_s);
    appendAndSave(*second, u"b"_s);
    second.reset();
    const auto restart = [this] {
        queue.reset();
        make();
        settle();
        return files().size();
    };
    EXPECT_EQ(restart(), 1);
    appendAndSave(*queue, u"a"_s);
    EXPECT_EQ(files().size(), 2);
    queue->updateAuth(std::nullopt, std::nullopt);
    settle();
    EXPECT_EQ(files().size(), 0) << "what is forgotten must not lie about";

    second = SubmissionQueue::make(sender, context());
    second->updateAuth(7, u"token"_s);
    appendAndSave(*second, u"b"_s);
    second.reset();
    QFile side(sideFile());
    ASSERT_TRUE(side.open(QIODevice::ReadWrite));
    side.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);
    side.close();
    EXPECT_EQ(restart(), 0);
}

TEST_F(SharedFolderTest, TheOwnerOfAFolderThatWasEmptiedSharesItWithTheNextOne) {
    QFileInfo(fileName).dir().removeRecursively();
    Storage::setUp();
    second = SubmissionQueue::make(sender, context());
    settle();
    appendAndSave(*second, u"b"_s);
    appendAndSave(*queue, u"a"_s);
    EXPECT_EQ(file(), stateText({"b"}));
    EXPECT_EQ(files().size(), 2);
}

} // namespace KestrioKit
