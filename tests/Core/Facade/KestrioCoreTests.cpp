#include "tests/Core/Facade/KestrioCoreTest.h"

#include "KestrioKit/Core/Platform/LanguageBundle.h"

#include <QDateTime>
#include <QRegularExpression>

#include <future>

namespace KestrioKit {

TEST_F(KestrioCoreTest, HoldsEarlyCallsUntilThereIsAVisitorAlthoughTheHostLogsOutMeanwhile) {
    network->hold(true);
    configure();
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
        core->track(name, {});
    core->track(u"Held"_s, handler());
    core->setUserIdentifier(u"nobody"_s);
    core->setUserIdentifier(u"u"_s);
    answer(attachLine, {404});
    release(); // the configuration
    EXPECT_EQ(bodies(visitorLine)[0]["userId"_L1], u"u"_s);
    release(); // the visitor
    core->logout();
    finish();
    release(); // the user, and the first batch
    release();
    EXPECT_TRUE(states.isEmpty());
    network->hold(false);
    release(); // the next visitor
    EXPECT_EQ(states, QList{SurveyState::noSurvey});
    EXPECT_EQ(requests(attachLine).size(), 1);
    QString batches;
    for (const RecordedRequest &batch : requests("POST /events/batch"))
        batches += QString::fromUtf8(batch.body);
    EXPECT_TRUE(batches.contains(QRegularExpression(u"\"a\".*\"b\".*\"c\""_s)));
}

TEST_F(KestrioCoreTest, LosesNoCallThatAnyThreadMakesWhileTheVisitorArrives) {
    std::vector<std::jthread> threads;
    for (int caller = 0; caller < 4; ++caller) {
        threads.emplace_back([this] {
            core->configure(u"env"_s);
            for (int call = 0; call < 50; ++call)
                core->track(u"Event"_s, handler());
        });
    }
    EXPECT_TRUE(waitFor([this] { return states.size() == 4 * 50; }));
    threads.clear();
    EXPECT_FALSE(states.contains(SurveyState::disabled));
    EXPECT_EQ(requests(configLine).size(), 1);
}

TEST_F(KestrioCoreTest, StaysOffWithoutAConfigurationAndStartsOverWithoutAVisitor) {
    EXPECT_EQ(track(), SurveyState::disabled) << "before it is configured";
    const ServerAnswer good{200, R"({"vid":1})"};
    using enum SurveyState;
    using State = std::optional<SurveyState>;
    const std::tuple<ServerAnswer, ServerAnswer, State, State> cases[] = {
        {ServerAnswer::cut(200, 0), good, disabled, disabled},
        {{200, R"({"disabled":"why"})"}, good, disabled, disabled},
        {{404}, good, std::nullopt, std::nullopt},
        {{600}, good, std::nullopt, std::nullopt},
        {{200}, ServerAnswer::cut(200, 0), disabled, noSurvey},
        {{200}, {200, R"({"token":"t"})"}, disabled, noSurvey},
    };
    for (const auto &[configuration, visitor, before, after] : cases) {
        SCOPED_TRACE((configuration.head() + visitor.head()).toStdString());
        startAfresh();
        answer(configLine, configuration);
        answer(visitorLine, visitor);
        network->hold(true);
        configure();
        states.clear();
        core->track(u"Held"_s, handler());
        network->hold(false);
        release();
        EXPECT_TRUE(states.isEmpty());
        EXPECT_EQ(track(), before);
        states.clear();
        answer(configLine, {});
        answer(visitorLine, good);
        configure();
        EXPECT_EQ(states.size(), after == noSurvey ? 1 : 0);
        EXPECT_EQ(track(), after);
    }
}

TEST_F(KestrioCoreTest, TellsTheHandlerWhatBecameOfTheEventAndReportsErrors) {
    const QByteArray survey = R"({"vid":1,"surveyId":7,"locale":"de","questions":[
        {"name":1,"type":"open","props":{"message":"m"}}]})";
    configure();
    const std::tuple<ServerAnswer, SurveyState, int> cases[] = {
        {{200, "null"}, SurveyState::noSurvey, 0},
        {{200, R"({"vid":1,"questions":[]})"}, SurveyState::noSurvey, 0},
        {{200, QByteArray(survey).replace("open", "hologram")}, SurveyState::noSurvey, 0},
        {{404, survey}, SurveyState::noSurvey, 0},
        {{200, R"({"questions":[]})"}, SurveyState::noSurvey, 1},
        {ServerAnswer::cut(200, 0), SurveyState::noSurvey, 2},
        {{299, survey}, SurveyState::surveyReady, 2},
    };
    for (const auto &[given, state, reports] : cases) {
        SCOPED_TRACE(given.head().toStdString() + given.body.toStdString());
        answer("POST /events", given);
        EXPECT_EQ(core->survey(), std::nullopt);
        EXPECT_EQ(track(), state);
        EXPECT_EQ(requests("POST /1/errors").size(), reports);
    }
    EXPECT_EQ(AnyLanguageBundle::framework().localizedString(u"Next"_s), u"Weiter"_s);
    answer("POST /events", {200, QByteArray(survey).replace("7", "8").replace(R"("de")", "null")});
    EXPECT_EQ(track(), SurveyState::surveyReady);
    EXPECT_EQ(AnyLanguageBundle::framework().localizedString(u"Next"_s), u"Next"_s);
    EXPECT_EQ(core->survey().value().surveyId, 7);
    core->setDisableNetworkAccess(true);
    EXPECT_EQ(track(), SurveyState::disabled);
}

TEST_F(KestrioCoreTest, CallsAHandlerThatMayUseTheLibraryAndDestroysItOnTheMainThread) {
    configure();
    QThread *destroyedOn = nullptr;
    std::shared_ptr<void> held(this, [&](void *) { destroyedOn = QThread::currentThread(); });
    core->track(u"First"_s, [this, held = std::move(held)](SurveyState) {
        core->track(u" \t\n"_s, handler());
        core->track(u" Second\n"_s, handler());
        core->logout();
    });
    finish();
    EXPECT_EQ(bodies("POST /events").last()["event"_L1], u"Second"_s);
    EXPECT_EQ(states.size(), 1);
    EXPECT_EQ(requests(visitorLine).size(), 2);
    EXPECT_EQ(destroyedOn, QThread::currentThread());
}

TEST_F(KestrioCoreTest, AttachesAUserToTheAnonymousVisitor) {
    using enum SurveyState;
    const std::tuple<ServerAnswer, QByteArray, int, SurveyState> cases[] = {
        {{200, R"({"vid":2})"}, R"(2,"userIdentifier":"u"})", 1, noSurvey},
        {{200, R"({"vid":1})"}, R"(1,"userIdentifier":"u"})", 0, noSurvey},
        {{404}, "1}", 1, noSurvey},
        {ServerAnswer::cut(200, 0), "1}", 0, disabled},
    };
    for (const auto &[given, visitor, launches, later] : cases) {
        SCOPED_TRACE(given.head().toStdString());
        startAfresh();
        answer(attachLine, given);
        configure();
        const qsizetype launchesBefore = requests("POST /events/batch").size();
        core->setUserIdentifier(u"u"_s);
        finish();
        EXPECT_EQ(bodies(attachLine).last()["userId"_L1], u"u"_s);
        EXPECT_EQ(identity(), R"({"token":"t1","visitorIdentifier":)" + visitor);
        EXPECT_EQ(requests("POST /events/batch").size() - launchesBefore, launches);
        EXPECT_EQ(track(), later);
    }
}

TEST_F(KestrioCoreTest, AsksForTheVisitorOfAnotherUserOrOfNoneWithoutAuthorization) {
    startAfresh({u"old"_s, 5, u"\u00e4"_s});
    configure();
    EXPECT_EQ(requests(configLine).last().header("Authorization"), "Bearer old");
    EXPECT_EQ(bodies(visitorLine).last()["userId"_L1], u"\u00e4"_s);
    core->setUserIdentifier(u"a\u0308"_s);
    finish();
    EXPECT_EQ(requests(visitorLine).size(), 1);
    answer(visitorLine, {200, R"({"vid":2})"});
    core->setUserIdentifier(u"b"_s);
    finish();
    EXPECT_EQ(requests(visitorLine).last().header("Authorization"), std::nullopt);
    EXPECT_EQ(bodies(visitorLine).last()["userId"_L1], u"b"_s);
    EXPECT_EQ(identity(),
              "{\"token\":\"t1\",\"visitorIdentifier\":2,\"userIdentifier\":\"\u00e4\"}");
    network->hold(true);
    core->logout();
    finish();
    EXPECT_EQ(identity(), "");
    EXPECT_EQ(core->api()->visitorIdentifier(), std::nullopt);
    EXPECT_EQ(requests(visitorLine).last().header("Authorization"), std::nullopt);
    EXPECT_EQ(bodies(visitorLine).last(), QJsonObject());
    network->hold(false);
    release();
    EXPECT_EQ(identity(), R"({"visitorIdentifier":2})");
}

TEST_F(KestrioCoreTest, TakesTheVisitorOfTheEnvironmentAndKeepsItsToken) {
    qputenv("KESTRIO_AUTH_TOKEN", "given");
    for (const auto &[text, number] : {std::pair{"7", 7},
                                       {"+7", 7},
                                       {"-7", -7},
                                       {" 7 ", 0},
                                       {"\xd9\xa7", 0},
                                       {"9223372036854775808", 0}}) {
        qputenv("KESTRIO_VISITOR_IDENTIFIER", text);
        startAfresh();
        answer(visitorLine, {200, R"({"vid":1})"});
        network->hold(true);
        configure();
        EXPECT_EQ(core->api()->visitorIdentifier().value_or(0), number) << text;
        network->hold(false);
        release();
        EXPECT_EQ(core->api()->authorizationToken().has_value(), number != 0) << text;
        EXPECT_EQ(identity().contains(R"("token":"given")"), number != 0) << text;
    }
    qunsetenv("KESTRIO_AUTH_TOKEN");
    qunsetenv("KESTRIO_VISITOR_IDENTIFIER");
}

TEST_F(KestrioCoreTest, StartsOverAfterAFailureAlthoughALaterRequestSucceeds) {
    startAfresh({u"old"_s, 5, u"a"_s});
    configure();
    network->hold(true);
    answer(visitorLine, ServerAnswer::cut(200, 0));
    core->setUserIdentifier(u"b"_s);
    finish();
    answer(visitorLine, {200, R"({"vid":2})"});
    core->setUserIdentifier(u"c"_s);
    finish();
    network->hold(false);
    release(); // the first
    release(); // the second
    EXPECT_EQ(track(), SurveyState::disabled);
    configure();
    EXPECT_EQ(track(), SurveyState::noSurvey);
}

TEST_F(KestrioCoreTest, IgnoresAnswersThatLaterOnesHaveOvertaken) {
    for (const ServerAnswer &late :
         {ServerAnswer{200, R"({"vid":1,"token":"late"})"}, ServerAnswer::cut(200, 0)}) {
        startAfresh();
        configure();
        answer(attachLine, late);
        network->hold(true);
        core->setUserIdentifier(u"u"_s);
        finish();
        core->logout();
        finish();
        answer(visitorLine, {200, R"({"vid":3,"token":"t3"})"});
        core->setUserIdentifier(u"next"_s);
        finish();
        network->hold(false);
        release(2); // the visitor of the next user
        release(1); // the anonymous visitor after the logout
        release(0); // the user before it
        EXPECT_EQ(identity(), R"({"token":"t3","visitorIdentifier":3})");
        EXPECT_EQ(core->api()->disabledError(), std::nullopt);
    }
}

TEST_F(KestrioCoreTest, MakesTheCallsAfterALogoutForTheUserWhoFollows) {
    configure();
    network->hold(true);
    core->logout();
    finish();
    answer(visitorLine, {200, R"({"vid":3})"});
    core->setUserIdentifier(u"bob"_s);
    core->setEmailAddress(u"b@c"_s);
    core->track(u"Held"_s, handler());
    finish();
    release(); // the anonymous visitor
    EXPECT_TRUE(requests("PUT /attributes/!email").isEmpty());
    network->hold(false);
    release(); // the user
    EXPECT_EQ(requests("PUT /1/visitors/3/attributes/!email").size(), 1);
    EXPECT_EQ(requests("POST /1/visitors/3/events").size(), 1);
    EXPECT_EQ(states, QList{SurveyState::noSurvey});
}

TEST_F(KestrioCoreTest, DropsTheCallsOfAUserWhoNeverComes) {
    using Refusal = std::function<void()>;
    for (const Refusal &refuse : {Refusal([this] { core->logout(); }), Refusal([this] {
                                      answer(visitorLine, {404});
                                      core->setUserIdentifier(u"bob"_s);
                                  })}) {
        startAfresh();
        configure();
        states.clear();
        core->logout();
        core->track(u"Held"_s, handler());
        refuse();
        finish();
        EXPECT_EQ(states, QList{SurveyState::disabled});
    }
}

TEST_F(KestrioCoreTest, LogsAnotherEnvironmentThatItIgnores) {
    configure();
    testing::internal::CaptureStdout();
    configure();
    core->configure(u"other"_s);
    finish();
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        "Kestrio - [Error]: configure() is ignored for the environment \"other\": the library "
        "works in \"env\" already.\n");
}

TEST_F(KestrioCoreTest, ForgetsEverythingOnceConsentIsWithdrawn) {
    startAfresh({u"old"_s, 5, u"a"_s});
    core->setSavesPromptly(true);
    configure();
    network->hold(true);
    core->track(u"Sent"_s, {});
    finish();
    core->track(u"Waiting"_s, {});
    core->track(u"Asked"_s, handler());
    later(1);
    EXPECT_GE(storedFiles().size(), 2);
    core->withdrawConsent();
    core->track(u"Refused"_s, {});
    const qsizetype before = server.requests().size();
    network->hold(false);
    while (network->held() > 0)
        release();
    later(1000);
    EXPECT_EQ(server.requests().size(), before);
    EXPECT_EQ(storedFiles(), QStringList());
    EXPECT_EQ(states, QList{SurveyState::disabled});
    EXPECT_FALSE(core->api()->visitorIdentifier() || core->api()->authorizationToken() ||
                 core->config());
    EXPECT_EQ(track(), SurveyState::disabled);
    configure();
    EXPECT_EQ(requests(configLine).last().header("Authorization"), std::nullopt);
    EXPECT_EQ(bodies(visitorLine).last(), QJsonObject());
    EXPECT_EQ(track(), SurveyState::noSurvey);
}

TEST_F(KestrioCoreTest, DoesNotReadAnIdentityThatIsStillToBeErased) {
    startAfresh({u"old"_s, 5, u"a"_s});
    std::promise<void> slowDisk;
    thread.post([&slowDisk] { slowDisk.get_future().wait(); });
    core->withdrawConsent();
    core->configure(u"env"_s);
    slowDisk.set_value();
    finish();
    EXPECT_EQ(requests(configLine).last().header("Authorization"), std::nullopt);
}

TEST_F(KestrioCoreTest, TidiesUpAfterProcessesThatWereCutOff) {
    const QString young = u"VisitorData.json.abcABC"_s; // perhaps it is being written
    const QString somebodys = u"VisitorData.json.backup1"_s;
    for (const QString &name :
         {young, somebodys, u"VisitorData.json.xyzXYZ"_s, u"SubmissionQueue.json.xyzXYZ"_s}) {
        QFile file(folder().filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.setFileTime(QDateTime::currentDateTime().addSecs(name == young ? 0 : -2 * 3600),
                         QFileDevice::FileModificationTime);
    }
    configure();
    EXPECT_EQ(storedFiles(),
              QStringList({u"SubmissionQueue.json"_s, u"VisitorData.json"_s, young, somebodys}));
}

TEST_F(KestrioCoreTest, ErasesWhatEarlierProcessesHaveLeftWithoutBeingConfigured) {
    startAfresh({u"old"_s, 5, u"a"_s});
    for (const QString &name : {u"SubmissionQueue.json"_s, u"VisitorData.json.abCdef"_s,
                                u"SubmissionQueue-0123456789abcdef0123456789abcdef.json"_s})
        EXPECT_TRUE(QFile(folder().filePath(name)).open(QIODevice::WriteOnly));
    EXPECT_EQ(storedFiles().size(), 4);
    core->withdrawConsent();
    finish();
    EXPECT_EQ(storedFiles(), QStringList());
}

} // namespace KestrioKit
