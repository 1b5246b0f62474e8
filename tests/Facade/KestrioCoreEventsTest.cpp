#include "KestrioKit/Platform/LanguageBundle.h"
#include "tests/Facade/KestrioCoreTest.h"

namespace KestrioKit {

using KestrioCoreEventsTest = KestrioCoreTest;

namespace {

QByteArray survey(int id, const QByteArray &type = "open", const QByteArray &locale = "null") {
    return R"({"vid":1,"surveyId":)" + QByteArray::number(id) + R"(,"locale":)" + locale +
           R"(,"questions":[{"name":1,"type":")" + type + R"(","props":{"message":"m"}}]})";
}

} // namespace

TEST_F(KestrioCoreEventsTest, TellsTheHandlerWhatBecameOfTheEventAndReportsErrors) {
    configure();
    const struct {
        ServerAnswer answer;
        SurveyState state;
        const char *printed; // nothing else is, when empty
        int reports;
    } cases[] = {
        {{200, "null"}, SurveyState::noSurvey, "", 0},
        {{200, R"({"vid":1,"questions":[]})"}, SurveyState::noSurvey, "Received 0 questions", 0},
        {{200, survey(7, "hologram")}, SurveyState::noSurvey, "Received 1 questions", 0},
        {{404, survey(7)}, SurveyState::noSurvey, "", 0},
        {{200, R"({"questions":[]})"}, SurveyState::noSurvey, "[Error]: More Info: The data", 2},
        {ServerAnswer::cut(200, 0), SurveyState::noSurvey, "[Error]: More Info: The request", 1},
        {{200, survey(7)}, SurveyState::surveyReady, "[Info]: Received 1 questions", 0},
    };
    for (const auto &[given, state, printed, reports] : cases) {
        SCOPED_TRACE(given.head().toStdString() + given.body.toStdString());
        answer(eventLine, given);
        const qsizetype reportsBefore = requests("POST /1/errors").size();
        EXPECT_EQ(core->survey(), std::nullopt);
        ::testing::internal::CaptureStdout();
        EXPECT_EQ(track(), state);
        const std::string output = ::testing::internal::GetCapturedStdout();
        EXPECT_NE(output.find(printed), std::string::npos) << output;
        EXPECT_EQ(output.empty(), std::string(printed).empty()) << output;
        EXPECT_EQ(requests("POST /1/errors").size() - reportsBefore, reports);
    }
    EXPECT_EQ(states.size(), std::size(cases));
    EXPECT_EQ(core->survey().value().surveyId, 7);
}

TEST_F(KestrioCoreEventsTest, KeepsTheFirstSurveyAndSpeaksTheLanguageOfTheLast) {
    const auto text = [](const QString &language) {
        AnyLanguageBundle bundle;
        bundle.setLanguage(language);
        return bundle.localizedString(u"Next"_s);
    };
    ASSERT_NE(text(u"de"_s), text(u"en"_s));
    configure();
    for (const auto &[id, locale, language] :
         {std::tuple(7, R"("de")", u"de"_s), std::tuple(8, "null", u"en"_s)}) {
        answer(eventLine, {200, survey(id, "open", locale)});
        EXPECT_EQ(track(), SurveyState::surveyReady);
        EXPECT_EQ(AnyLanguageBundle::framework().localizedString(u"Next"_s), text(language));
        EXPECT_EQ(core->survey().value().surveyId, 7);
    }
}

TEST_F(KestrioCoreEventsTest, SendsWhatIsNotEmptyWithoutTheBlanksAround) {
    configure();
    const qsizetype before = lines().size();
    core->track(u" \n\t "_s, handler());
    core->setVisitorAttributes({});
    core->removeVisitorAttributes({});
    finish();
    EXPECT_EQ(lines().size(), before);
    core->track(u"\tTwo  words\n"_s, handler());
    core->setVisitorAttributes({{u"plan"_s, u" "_s}});
    core->removeVisitorAttributes({u"plan"_s, u"age"_s});
    finish();
    const QByteArray attributes = "/2/environments/env/visitors/1/attributes";
    EXPECT_EQ(bodies(eventLine)[0]["event"_L1], u"Two  words"_s);
    EXPECT_EQ(requests("PUT " + attributes)[0].body, R"({"plan":" "})");
    EXPECT_EQ(requests("DELETE " + attributes)[0].body, R"({"delete":["plan","age"]})");
    EXPECT_EQ(states.size(), 1);
}

TEST_F(KestrioCoreEventsTest, SendsNothingWhileTheNetworkIsDisabled) {
    configure();
    const qsizetype before = lines().size();
    core->setDisableNetworkAccess(true);
    EXPECT_EQ(track(), SurveyState::disabled);
    core->track(u"Dropped"_s, {});
    finish();
    EXPECT_EQ(lines().size(), before);
    core->setDisableNetworkAccess(false);
    EXPECT_EQ(track(), SurveyState::noSurvey);
}

TEST_F(KestrioCoreEventsTest, CallsAHandlerThatMayUseTheLibraryAndDestroysItOnTheMainThread) {
    configure();
    QThread *destroyedOn = nullptr;
    const auto noteThread = [&destroyedOn](void *) {
        destroyedOn = QThread::currentThread();
    };
    core->track(u"First"_s, [this, held = std::shared_ptr<void>(this, noteThread)](SurveyState) {
        core->track(u"Second"_s, handler());
        core->logout();
    });
    finish();
    EXPECT_EQ(states.size(), 1);
    EXPECT_EQ(requests(visitorLine).size(), 2);
    EXPECT_EQ(destroyedOn, QThread::currentThread());
}

} // namespace KestrioKit
