#include "tests/Facade/KestrioCoreTest.h"

namespace KestrioKit {

using KestrioCoreIdentityTest = KestrioCoreTest;

TEST_F(KestrioCoreIdentityTest, AttachesAUserToTheAnonymousVisitorNowOrAfterStartingUp) {
    const struct {
        ServerAnswer answer;
        QByteArray identity;
        int launches;
        SurveyState later;
    } cases[] = {
        {{200, R"({"vid":1,"token":"t2"})"},
         R"({"token":"t2","visitorIdentifier":1,"userIdentifier":"u"})",
         1,
         SurveyState::noSurvey},
        {{200, R"({"vid":2,"token":"t2"})"},
         R"({"token":"t2","visitorIdentifier":2,"userIdentifier":"u"})",
         2,
         SurveyState::noSurvey},
        {{404}, R"({"token":"t1","visitorIdentifier":1})", 2, SurveyState::noSurvey},
        {ServerAnswer::cut(200, 0), R"({"token":"t1","visitorIdentifier":1})", 1,
         SurveyState::disabled},
    };
    for (const bool early : {true, false}) {
        for (const auto &[given, expectedIdentity, launches, later] : cases) {
            SCOPED_TRACE(given.head().toStdString() + (early ? "early" : "late"));
            startAfresh();
            answer(attachLine, given);
            const qsizetype attachedBefore = requests(attachLine).size();
            const qsizetype launchesBefore = batchedEvents().size();
            network->hold(early);
            configure();
            core->setUserIdentifier(early ? u"nobody"_s : u"u"_s);
            states.clear();
            if (early) {
                core->setUserIdentifier(u"u"_s);
                core->track(u"Held"_s, handler());
                network->hold(false);
                release();
                EXPECT_EQ(bodies(visitorLine).last()["userId"_L1], u"u"_s);
            }
            finish();
            EXPECT_EQ(states.size(), early && later == SurveyState::noSurvey ? 1 : 0);
            EXPECT_EQ(requests(attachLine).size() - attachedBefore, 1);
            EXPECT_EQ(bodies(attachLine).last()["userId"_L1], u"u"_s);
            EXPECT_EQ(identity(), expectedIdentity);
            EXPECT_EQ(batchedEvents().size() - launchesBefore, launches);
            EXPECT_EQ(track(), later);
        }
    }
}

TEST_F(KestrioCoreIdentityTest, AsksForTheVisitorOfAnotherUserWithoutAuthorization) {
    setIdentity(R"({"token":"old","visitorIdentifier":1,"userIdentifier":"a"})");
    answer(visitorLine, {200, R"({"vid":1})"});
    configure();
    core->setUserIdentifier(u"a"_s);
    finish();
    EXPECT_EQ(requests(visitorLine).size(), 1);
    answer(visitorLine, {200, R"({"vid":2})"});
    for (int asked = 2; asked <= 3; ++asked) {
        core->setUserIdentifier(u"b"_s);
        finish();
        ASSERT_EQ(requests(visitorLine).size(), asked);
        EXPECT_EQ(requests(visitorLine).last().header("Authorization"), std::nullopt);
        EXPECT_EQ(bodies(visitorLine).last()["userId"_L1], u"b"_s);
        EXPECT_EQ(identity(), R"({"token":"old","visitorIdentifier":2,"userIdentifier":"a"})");
    }
    EXPECT_EQ(batchedEvents().size(), 3);
}

TEST_F(KestrioCoreIdentityTest, ForgetsTheUserAtLogoutForGood) {
    answer(attachLine, {200, R"({"vid":2,"token":"t2"})"});
    core->configure(u"env"_s);
    core->setUserIdentifier(u"u"_s);
    finish();
    ASSERT_EQ(core->api()->visitorIdentifier(), 2);
    answer(visitorLine, {200, R"({"vid":3,"token":"t3"})"});
    network->hold(true);
    core->logout();
    finish();
    EXPECT_EQ(identity(), "");
    EXPECT_EQ(core->api()->visitorIdentifier(), std::nullopt);
    network->hold(false);
    release();
    EXPECT_EQ(bodies(visitorLine).last(), QJsonObject());
    EXPECT_EQ(requests(visitorLine).last().header("Authorization"), std::nullopt);
    EXPECT_EQ(identity(), R"({"token":"t3","visitorIdentifier":3})");
    EXPECT_EQ(requests(attachLine).size(), 1);
    EXPECT_EQ(lines().last(), "POST /1/visitors/3/events/batch");
}

TEST_F(KestrioCoreIdentityTest, IgnoresAnswersThatLaterOnesHaveOvertaken) {
    for (const ServerAnswer &late :
         {ServerAnswer{200, R"({"vid":1,"token":"late"})"}, ServerAnswer::cut(200, 0)}) {
        startAfresh();
        answer(visitorLine, {200, R"({"vid":1,"token":"t1"})"});
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
        EXPECT_EQ(core->api()->visitorIdentifier(), 3);
        EXPECT_EQ(core->api()->disabledError(), std::nullopt);
    }
}

} // namespace KestrioKit
