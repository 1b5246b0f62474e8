#include "tests/Core/Facade/KestrioCoreTest.h"

namespace KestrioKit {

/// A start-up that fails, and what becomes of the host's calls.
class RepeatedStartUpTest : public KestrioCoreTest {
protected:
    static constexpr int eventCount = 20;
    inline static const LocalData stored{u"t1"_s, 1, {}};
    inline static const ServerAnswer away = ServerAnswer::cut(200, 0);

    void trackEvents(const QString &prefix) {
        for (int event = 0; event < eventCount; ++event)
            core->track(prefix + QString::number(event), {});
    }
    /// How often the service was sent an event of that name.
    qsizetype arrivals(const QString &name) const {
        qsizetype count = 0;
        for (const RecordedRequest &batch : requests("POST /events/batch"))
            count += batch.body.count("\"event\":\"" + name.toUtf8() + '"');
        return count;
    }
    void expectEachOnce(const QString &prefix) const {
        for (int event = 0; event < eventCount; ++event)
            EXPECT_EQ(arrivals(prefix + QString::number(event)), 1) << event;
    }
    qsizetype starts() const { return requests(configLine).size(); }
};

TEST_F(RepeatedStartUpTest, ComesAtItsTimesUntilAnAnswerIsFinal) {
    const std::pair<ServerAnswer, double> failures[] = {
        {{503}, 5},
        {{429}, 10},
        {{408}, 30},
        {ServerAnswer::redirect(307, "ftp://there"), 60},
        {{200, "<html>"}, 60},
        {away, 60},
    };
    answer(configLine, failures[0].first);
    configure();
    for (const auto &[failure, delay] : failures) {
        answer(configLine, failure);
        const qsizetype before = starts();
        later(delay - 1);
        EXPECT_EQ(starts(), before);
        later(1);
        EXPECT_EQ(starts(), before + 1);
        EXPECT_EQ(track(), SurveyState::disabled);
    }
    EXPECT_EQ(requests("POST /1/errors").size(), 0);
    answer(configLine, {404});
    later(60);
    const qsizetype all = starts();
    later(1000);
    EXPECT_EQ(starts(), all);
}

TEST_F(RepeatedStartUpTest, IsNotMadeAfterAFinalAnswerOrWhenTheHostDoesNotWantIt) {
    const std::tuple<ServerAnswer, bool, bool> cases[] = {
        {{200, R"({"disabled":"why"})"}, true, true}, {{503}, false, false}, {{503}, true, false}};
    for (const auto &[given, atFirst, afterwards] : cases) {
        startAfresh();
        core->setRetriesStartUp(atFirst);
        answer(configLine, given);
        configure();
        core->setRetriesStartUp(afterwards);
        const qsizetype before = starts();
        later(1000);
        EXPECT_EQ(starts(), before) << given.status << atFirst;
    }
}

TEST_F(RepeatedStartUpTest, DeliversOnceWhatTheHostDidMeanwhile) {
    const std::pair<const char *, ServerAnswer> cases[] = {
        {configLine, {}}, {visitorLine, {200, R"({"vid":1,"token":"t1"})"}}, {attachLine, {404}}};
    for (const auto &[line, good] : cases) {
        for (const LocalData &identity : {LocalData(), stored}) {
            SCOPED_TRACE(line);
            startAfresh(identity);
            const QString name = QString::number(server.requests().size()) + u'-';
            const qsizetype launches = arrivals(u"iOS Launch"_s);
            const qsizetype reports = requests("POST /1/errors").size();
            answer(attachLine, {404});
            answer(line, away);
            network->hold(true);
            configure();
            states.clear();
            core->track(u"Held"_s, handler());
            core->track(name + u"early"_s, {});
            if (line == attachLine)
                core->setUserIdentifier(u"early"_s);
            network->hold(false);
            release();
            later(5);
            trackEvents(name);
            core->setVisitorAttribute(name, u"v"_s);
            core->setVisitorAttributes({{name, u"v"_s}});
            core->setUserIdentifier(u"late"_s);
            finish();
            EXPECT_TRUE(states.isEmpty());
            EXPECT_EQ(arrivals(name + u"early"_s), 0);
            answer(line, good);
            later(10);
            EXPECT_EQ(states, QList{SurveyState::noSurvey});
            EXPECT_EQ(arrivals(name + u"early"_s), 1);
            expectEachOnce(name);
            EXPECT_EQ(requests("PUT /" + name.toUtf8()).size(), 1);
            EXPECT_EQ(bodies("PUT /attributes").last().keys(), QStringList{name});
            EXPECT_EQ(bodies(attachLine).last()["userId"_L1], u"late"_s);
            EXPECT_LE(requests("POST /1/errors").size(), reports + 1);
            // The second for the user.
            EXPECT_EQ(arrivals(u"iOS Launch"_s), launches + 2);
        }
    }
}

TEST_F(RepeatedStartUpTest, CutOffByTheEndLeavesItToTheNextProcessWhereAVisitorIsStored) {
    startAfresh(stored);
    network->hold(true);
    configure();
    trackEvents(u"kept-"_s);
    finish();
    Q_EMIT qApp->aboutToQuit({});
    finish();
    core.reset();
    network->take(0);
    network->hold(false);
    core = KestrioCore::make(context());
    configure();
    expectEachOnce(u"kept-"_s);
}

TEST_F(RepeatedStartUpTest, HoldsSoManyCallsAndDropsTheOldestEventsFirst) {
    const auto bootstrap = std::make_shared<Bootstrap>(thread);
    QList<qsizetype> made;
    for (qsizetype call = 0; call <= Bootstrap::recordLimit; ++call)
        bootstrap->enqueue(
            {call == 0 ? HeldCall::Kind::attributes : HeldCall::Kind::event, [&made, call] {
                 made.append(call);
             }});
    bootstrap->flush();
    settle();
    EXPECT_EQ(made.size(), Bootstrap::recordLimit);
    EXPECT_EQ(made.first(2), QList<qsizetype>({0, 2}));
}

TEST_F(RepeatedStartUpTest, ComesWithTheNetworkAndWaitsForTheHostToAllowIt) {
    answer(configLine, away);
    configure();
    flagsSource->change({});
    finish();
    EXPECT_EQ(starts(), 1);
    flagsSource->change(ReachabilityFlag::reachable);
    finish();
    EXPECT_EQ(starts(), 2);
    core->setDisableNetworkAccess(true);
    for (const double seconds : {10, 1000})
        later(seconds);
    EXPECT_EQ(starts(), 2);
    core->track(u"Dropped"_s, {});
    answer(configLine, {});
    core->setDisableNetworkAccess(false);
    finish();
    EXPECT_EQ(starts(), 3);
    EXPECT_EQ(track(), SurveyState::noSurvey);
    EXPECT_EQ(arrivals(u"Dropped"_s), 0);
}

TEST_F(RepeatedStartUpTest, ForgetsTheVisitorWhoLogsOutMeanwhile) {
    startAfresh({u"old"_s, 5, u"a"_s});
    answer(configLine, away);
    configure();
    core->setUserIdentifier(u"b"_s);
    trackEvents(u"b-"_s);
    core->logout();
    finish();
    EXPECT_EQ(identity(), "");
    core->track(u"Anonymous"_s, {});
    answer(configLine, {});
    later(5);
    EXPECT_EQ(bodies(visitorLine).last(), QJsonObject());
    EXPECT_EQ(arrivals(u"Anonymous"_s), 1);
    EXPECT_EQ(arrivals(u"b-0"_s), 0);
}

} // namespace KestrioKit
