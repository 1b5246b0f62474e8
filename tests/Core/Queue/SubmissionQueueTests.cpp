#include "tests/Core/Queue/QueueTest.h"

#include <QGuiApplication>

#include <future>

namespace KestrioKit {

using enum ReachabilityFlag;

using SubmissionQueueTest = QueueTest;

TEST_F(SubmissionQueueTest, WithoutANetworkStoresTheNewestExceptBulkChangesForTheNextStart) {
    flagsSource->change({});
    make();
    appendAttribute(u"plan"_s);
    append({}, Request::UpdateAttributes{{{u"a"_s, u"b"_s}}});
    append({}, Request::RemoveAttributes{{u"a"_s}});
    append({}, Request::SurveyEvent{});
    append({}, Request::RecordError{});
    append({}, Request::SurveyResponse{});
    QStringList names;
    for (char name = 'A'; name <= 'Z'; ++name) {
        names.append(QChar::fromLatin1(name));
        appendEvent(names.last());
    }
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    settle();
    EXPECT_FALSE(QFile::permissions(fileName) & (QFile::ReadGroup | QFile::ReadOther));
    EXPECT_EQ(sender->sends(), 0);
    queue.reset();
    make();
    settle();
    flagsSource->change(reachable);
    settle();
    EXPECT_EQ(sender->sends(), 5);
    EXPECT_TRUE(sender->out().contains(names.sliced(1).join(u',')));
}

TEST_F(SubmissionQueueTest, SendsWhatItsOwnFileHoldsBeforeWhatIsNew) {
    const QPair<QByteArray, QString> rows[] = {
        {R"("version":3,"vid":8,)", u"first,second,new"_s},
        {R"("version":2,"vid":8,)", u"new"_s},
        {R"("version":3,"vid":7,)", u"new"_s},
        {R"("version":3,)", u"new"_s},
        {R"("version":3,"vid":"8",)", u"new"_s},
    };
    for (const auto &[head, out] : rows) {
        store(stateText({"first", "second"}).replace(rows[0].first, head));
        std::promise<void> slowDisk;
        thread.post([&slowDisk] { slowDisk.get_future().wait(); });
        make();
        appendEvent(u"new"_s);
        slowDisk.set_value();
        settle();
        EXPECT_EQ(sender->out(), QStringList(out));
        answer(200);
    }
}

TEST_F(SubmissionQueueTest, KeepsWhatIsStoredWhenTheApplicationStepsBackWhileItIsMade) {
    store(stateText({"first"}));
    LibraryContext interrupted = context();
    interrupted.makeFlagsSource = [this](const QString &) {
        Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
        flagsSource->change({});
        return flagsSource;
    };
    queue = SubmissionQueue::make(sender, interrupted);
    settle();
    EXPECT_EQ(file(), stateText({"first"}));
}

TEST_F(SubmissionQueueTest, SavesPromptlyWhereTheHostWantsThatAtMostOnceInAWhile) {
    make();
    appendEvent(u"out"_s);
    settle();
    advance(1000);
    EXPECT_EQ(file(), "none");
    queue->setSavesPromptly(true);
    const struct {
        QString event;
        double seconds;
        QByteArrayList saved;
    } rows[] = {{u"a"_s, 0.05, {"a", "out"}},
                {u"b"_s, 0.19, {"a", "out"}},
                {u"c"_s, 0.01, {"a", "b", "c", "out"}},
                {u"d"_s, 0.2, {"a", "b", "c", "d", "out"}}};
    for (const auto &[event, seconds, saved] : rows) {
        appendEvent(event);
        settle();
        advance(seconds);
        EXPECT_EQ(file(), stateText(saved)) << qPrintable(event);
    }
    // A save of another reason is one, too.
    appendEvent(u"f"_s);
    answer(200);
    EXPECT_EQ(file(), stateText({"a", "b", "c", "d", "f"}));
    ASSERT_TRUE(QFile::remove(fileName));
    advance(1000);
    EXPECT_EQ(file(), "none");
}

TEST_F(SubmissionQueueTest, AnotherVisitorEmptiesItButForWhatComesAfter) {
    make();
    appendEvent(u"out"_s);
    settle();
    appendEvent(u"waiting"_s);
    queue->updateAuth(8, u"newer"_s);
    queue->save();
    settle();
    EXPECT_EQ(file(), stateText({"waiting", "out"}).replace(":\"token\"", ":\"newer\""));

    queue->updateAuth(9, u"other"_s);
    settle();
    EXPECT_EQ(file(), "none");
    appendEvent(u"after"_s);
    queue->save();
    settle();
    EXPECT_EQ(file(), "none");
    advance(0.02);
    EXPECT_EQ(file(), stateText({"after"}).replace(R"(8,"token":"token")", R"(9,"token":"other")"));
    answer(503);
    EXPECT_EQ(sender->out(), QStringList(u"after"_s));
    EXPECT_EQ(completions, QStringList(u"out 503"_s));
}

TEST_F(SubmissionQueueTest, SendsAsTheVisitorWhoseRecordsItHolds) {
    make();
    sender->setVisitor(9);
    appendEvent(u"old"_s);
    settle();
    EXPECT_EQ(sender->lastSend(), u"old 8 token"_s);
    queue->updateAuth(9, u"other"_s);
    appendAttribute(u"new"_s);
    settle();
    EXPECT_EQ(sender->lastSend(), u"new 9 other"_s);
}

TEST_F(SubmissionQueueTest, SendsEventsThatFollowCloselyTogetherButDropsNoneForThat) {
    make(3);
    const auto sent = [this](const QStringList &events) {
        for (const QString &event : events)
            appendEvent(event);
        settle();
        return sender->out();
    };
    EXPECT_EQ(sent({u"a"_s}), QStringList(u"a"_s));
    answer(200);
    EXPECT_EQ(sent({u"b"_s, u"c"_s}), QStringList());
    advance(0.01);
    EXPECT_EQ(sender->out(), QStringList(u"b,c"_s));
    answer(200);
    EXPECT_EQ(sent({u"d"_s, u"e"_s, u"f"_s}), QStringList(u"d,e,f"_s));
}

TEST_F(SubmissionQueueTest, WaitsForAScheduledSaveUnlessEverythingIsErased) {
    make();
    for (const QString &key : {u"saved"_s, u"to be saved"_s}) {
        appendAttribute(key);
        settle();
        answer(200);
    }
    EXPECT_FALSE(queue->isIdle());
    queue->erase();
    settle();
    advance(0.02);
    EXPECT_TRUE(queue->isIdle());
}

TEST_F(SubmissionQueueTest, SendsNoMoreTogetherThanAServiceTakes) {
    flagsSource->change({});
    make(300);
    sender->setMostTogether(1);
    for (const QString &name : {u"a"_s, u"b"_s})
        appendEvent(name);
    for (int number = 0; number < 250; ++number)
        appendAttribute(u"k"_s);
    flagsSource->change(reachable);
    settle();
    EXPECT_EQ(sender->out().mid(0, 2), (QStringList{u"a"_s, u"b"_s}));
    int answered = 0;
    for (const int sent : {102, 202, 252}) {
        EXPECT_EQ(sender->sends(), sent);
        for (; answered < sender->sends(); ++answered)
            sender->answer(200);
        settle();
    }
    EXPECT_EQ(completions.size(), 252);
    advance(0.02);
    EXPECT_EQ(file(), stateText({}));
}

TEST_F(SubmissionQueueTest, KeepsAsManyAsTheHostWantsAndTellsOfTheRestOnceAMinute) {
    store(stateText({"a", "b", "c", "d"}));
    flagsSource->change({});
    testing::internal::CaptureStdout();
    make(2);
    settle();
    advance(1);
    appendEvent(u"newer"_s);
    settle();
    advance(59.5);
    flagsSource->change(reachable);
    settle();
    EXPECT_EQ(sender->out(), QStringList(u"d,newer"_s));
    const std::string line =
        "[SubmissionQueue] Records dropped because more than 2 of a kind waited: ";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), line + "2\n");
    testing::internal::CaptureStdout();
    advance(0.5);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), line + "1\n");
}

TEST_F(SubmissionQueueTest, KeepsRecordsWithoutAMonitor) {
    LibraryContext blind = context();
    blind.makeFlagsSource = [](const QString &) {
        return ENOSYS;
    };
    queue = SubmissionQueue::make(sender, blind);
    appendEvent(u"a"_s);
    queue->save();
    settle();
    EXPECT_TRUE(sender->handledErrors().value(0).localizedDescription.contains(u"0.0.0.0"_s));
    EXPECT_EQ(sender->sends(), 0);
    EXPECT_EQ(file(), stateText({"a"}));
}

} // namespace KestrioKit
