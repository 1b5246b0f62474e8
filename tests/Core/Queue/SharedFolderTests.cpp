#include "tests/Core/Queue/QueueTest.h"

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
    static constexpr double searchInterval = SubmissionQueue::searchInterval.count();
    std::shared_ptr<SubmissionQueue> second;
};

TEST_F(SharedFolderTest, WhatOneProcessLeavesTheOtherTakes) {
    appendAndSave(*queue, u"a"_s);
    appendAndSave(*second, u"b"_s);
    EXPECT_EQ(file(), stateText({"a"}));
    second.reset();
    advance(searchInterval);
    queue->save();
    settle();
    EXPECT_EQ(file(), stateText({"a", "b"}));
    EXPECT_EQ(files().size(), 1);
    second = SubmissionQueue::make(sender, context());
    settle();
    appendAndSave(*second, u"c"_s);
    queue.reset();
    advance(searchInterval);
    EXPECT_EQ(file(), stateText({"c", "a", "b"}));
    EXPECT_EQ(files().size(), 1);
}

TEST_F(SharedFolderTest, WhatItTakesStaysWhereItIsUntilItCanBeStored) {
    appendAndSave(*second, u"b"_s);
    second.reset();
    ASSERT_TRUE(QFileInfo(fileName).dir().mkdir(fileName)) << "a folder cannot be replaced";
    advance(searchInterval);
    for (const QString &event : {u"a"_s, u"c"_s}) {
        appendAndSave(*queue, event);
        advance(1);
        EXPECT_EQ(files().size(), 1);
    }
    ASSERT_TRUE(QFileInfo(fileName).dir().rmdir(fileName));
    queue->save();
    settle();
    EXPECT_EQ(file(), stateText({"a", "b", "c"}));
    EXPECT_EQ(files().size(), 1);
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
    QFile side(QFileInfo(fileName).dir().filePath(files().value(0)));
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
    queue.reset();
    make();
    settle();
    appendAndSave(*queue, u"c"_s);
    EXPECT_EQ(file(), stateText({"b"})) << "the lock of the next one is not the first one's";
}

} // namespace KestrioKit
