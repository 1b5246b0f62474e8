#include "KestrioKit/Queue/BatchRecordQueueRunner.h"
#include "KestrioKit/Queue/SingleRecordQueueRunner.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/ScriptedSender.h"

#include <QCoreApplication>
#include <QThread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

const Error failure{u"test"_s, 1, u"The cable was cut"_s};

QString nameOf(const QueueableRequest &request) {
    if (const auto *const event = std::get_if<Request::TrackEvent>(&request))
        return event->event;
    return std::get<Request::UpdateAttribute>(request).key;
}

class QueueRunnerTest : public LibraryFixture {
protected:
    template <typename Runner>
    std::shared_ptr<Runner> make() {
        return std::make_shared<Runner>(sender, DispatchQueue(u"test"_s, thread), clock, u"TEST"_s);
    }

    /// A task whose completion is noted in `completions`: its name, the status and the error.
    QueueTask task(const QString &name, QueueableRequest request) {
        return makeQueueTask(
            std::move(request), clock, [this, name](const auto &response, const auto &error) {
                EXPECT_TRUE(QThread::currentThread() == qApp->thread());
                completions.append(name + u' ' +
                                   QString::number(response ? response->statusCode : 0) +
                                   (error ? u" failed"_s : QString()));
            });
    }
    QueueTask attribute(const QString &name) {
        return task(name, Request::UpdateAttribute{name, u"value"_s});
    }
    QueueTask event(const QString &name) { return task(name, Request::TrackEvent{name, {}}); }

    QStringList kept(const QueueRunner &runner) {
        QStringList names;
        onLibraryThread([&] {
            for (const QueueableRequest &request : runner.recordsToPersist())
                names.append(nameOf(request));
        });
        return names;
    }

    std::shared_ptr<ScriptedSender> sender = std::make_shared<ScriptedSender>(clock);
    QStringList completions;
};

} // namespace

TEST_F(QueueRunnerTest, KeepsTheNewestTasksInOrder) {
    const auto runner = make<SingleRecordQueueRunner>();
    runner->setEnabled(false);
    QStringList names;
    QList<QueueTask> tasks;
    for (char16_t name = u'A'; name <= u'Z'; ++name)
        tasks.append(attribute(names.emplaceBack(name)));
    runner->append(tasks);
    runner->append(attribute(u"last"_s));
    EXPECT_EQ(kept(*runner), names.mid(2) << u"last"_s);
    advance(1000);
    EXPECT_EQ(sender->sends(), 0);
    EXPECT_EQ(completions, QStringList());
}

TEST_F(QueueRunnerTest, SendsATaskFiveTimesBeforeItGivesUp) {
    const auto runner = make<SingleRecordQueueRunner>();
    runner->append(attribute(u"a"_s));
    settle();
    int sends = 1;
    for (const double wait : {5, 10, 30, 60}) {
        EXPECT_EQ(sender->sends(), sends);
        clock.advance(3);
        sender->answer(503);
        settle();
        EXPECT_EQ(kept(*runner), QStringList(u"a"_s));
        advance(wait - 0.125);
        EXPECT_EQ(sender->sends(), sends++);
        advance(0.125);
    }
    sender->answer(503);
    advance(1000);
    EXPECT_EQ(sender->sends(), 5);
    EXPECT_EQ(completions, QStringList(u"a 503"_s));
    EXPECT_EQ(kept(*runner), QStringList());
}

TEST_F(QueueRunnerTest, JudgesEachAnswer) {
    const struct {
        std::optional<HTTPURLResponse> response;
        std::optional<Error> error;
        QString completion;
    } rows[] = {
        {{{200}}, {}, u"a 200"_s}, {{{399}}, {}, u"a 399"_s},
        {{{400}}, {}, u"a 400"_s}, {{{499}}, failure, u"a 499 failed"_s},
        {{{600}}, {}, u"a 600"_s}, {{}, {}, u"a 0"_s},
        {{{500}}, {}, {}},         {{{599}}, failure, {}},
        {{{200}}, failure, {}},    {{}, failure, {}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows);
        const auto runner = make<SingleRecordQueueRunner>();
        runner->append(attribute(u"a"_s));
        settle();
        sender->answer(row.response, row.error);
        settle();
        advance(5);
        const bool retried = row.completion.isEmpty();
        EXPECT_EQ(completions, retried ? QStringList() : QStringList(row.completion));
        EXPECT_EQ(sender->out(), retried ? QStringList(u"a"_s) : QStringList());
        EXPECT_TRUE(runner->enabled());
        if (retried)
            sender->answer(200);
        settle();
        completions.clear();
    }
}

TEST_F(QueueRunnerTest, StopsWhileTheServiceIsDisabledAndKeepsTheTask) {
    const auto runner = make<BatchRecordQueueRunner>();
    sender->setDisabledError(DisabledError{DisabledError::environment, {}});
    runner->append(event(u"a"_s));
    settle();
    EXPECT_FALSE(runner->enabled());
    sender->setDisabledError(std::nullopt);
    runner->append(event(u"b"_s));
    runner->flush();
    advance(1000);
    EXPECT_EQ(sender->sends(), 0);
    EXPECT_EQ(kept(*runner), (QStringList{u"a"_s, u"b"_s}));

    runner->setEnabled(true);
    runner->flush();
    settle();
    EXPECT_EQ(sender->out(), QStringList(u"a,b"_s));
    EXPECT_EQ(completions, QStringList());
}

TEST_F(QueueRunnerTest, SendsOneBatchAtATimeWhichSharesItsOutcome) {
    const auto runner = make<BatchRecordQueueRunner>();
    runner->append(event(u"a"_s));
    settle();
    for (const QString &name : {u"b"_s, u"c"_s, u"d"_s})
        runner->append(event(name));
    runner->flush();
    settle();
    EXPECT_EQ(sender->out(), QStringList(u"a"_s));
    EXPECT_EQ(kept(*runner), (QStringList{u"b"_s, u"c"_s, u"d"_s, u"a"_s}));

    sender->answer(200);
    settle();
    EXPECT_EQ(sender->out(), QStringList(u"b,c,d"_s));
    sender->answer({}, failure);
    settle();
    EXPECT_EQ(sender->out(), QStringList());
    advance(5);
    EXPECT_EQ(sender->out(), QStringList(u"b,c,d"_s));
    sender->answer(200);
    advance(1000);
    EXPECT_EQ(sender->sends(), 3);
    EXPECT_EQ(completions, (QStringList{u"a 200"_s, u"b 200"_s, u"c 200"_s, u"d 200"_s}));
}

TEST_F(QueueRunnerTest, SendsSingleRecordsSideBySide) {
    const auto runner = make<SingleRecordQueueRunner>();
    runner->append({attribute(u"a"_s), attribute(u"b"_s), attribute(u"c"_s)});
    settle();
    EXPECT_EQ(sender->out(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    sender->answer(503);
    runner->append(attribute(u"d"_s));
    sender->answer(200);
    settle();
    advance(5);
    EXPECT_EQ(sender->out(), QStringList(u"c"_s));
    EXPECT_EQ(kept(*runner), (QStringList{u"a"_s, u"d"_s, u"c"_s}));
    sender->answer(404);
    settle();
    EXPECT_EQ(sender->out(), (QStringList{u"a"_s, u"d"_s}));
    EXPECT_EQ(completions, (QStringList{u"b 200"_s, u"c 404"_s}));
}

TEST_F(QueueRunnerTest, ClearedTasksFinishTheirSendAndAreNeverSentAgain) {
    const auto runner = make<SingleRecordQueueRunner>();
    runner->append(attribute(u"out"_s));
    settle();
    runner->append(attribute(u"waiting"_s));
    onLibraryThread([&] { runner->clear(); });
    EXPECT_EQ(kept(*runner), QStringList());
    sender->answer(503);
    advance(1000);
    EXPECT_EQ(sender->sends(), 1);
    EXPECT_EQ(completions, QStringList(u"out 503"_s));
}

TEST_F(QueueRunnerTest, FinishesWhatCannotBeSent) {
    const auto batch = make<BatchRecordQueueRunner>();
    batch->append({attribute(u"a"_s), event(u"b"_s)});
    sender->setVisitor(std::nullopt);
    const auto single = make<SingleRecordQueueRunner>();
    single->append(attribute(u"c"_s));
    settle();
    EXPECT_EQ(completions, (QStringList{u"a 0"_s, u"b 0"_s, u"c 0"_s}));
    EXPECT_EQ(sender->sends(), 0);
    EXPECT_EQ(kept(*batch) + kept(*single), QStringList());
}

} // namespace KestrioKit
