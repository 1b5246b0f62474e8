#include "tests/Widgets/SurveyScreenTest.h"

#include "KestrioKit/Core/Session/SurveySessionPrivate.h"

#include <QSignalSpy>

#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto fiveQuestions = R"([
    {"name":11,"type":"nps","props":{"message":"How likely?","routingOptions":[
        {"comparator":"lt","value":3,"target":4}]}},
    {"name":12,"type":"likert","props":{"message":"How?"}},
    {"name":13,"type":"multiplechoice","props":{"message":"Which?","options":[
        {"id":1,"label":"Red","value":"red"},{"label":"Nameless","value":"none"}]}},
    {"name":14,"type":"multipleselect","props":{"message":"Which ones?","options":[
        {"id":1,"label":"Red","value":"red"},{"id":2,"label":"Blue","value":"blue"}]}},
    {"name":15,"type":"open","props":{"message":"Why?"}}])";

} // namespace

/// Surveys that a host draws itself, beside the same on the library's card.
class SurveySessionTest : public SurveyScreenTest {
protected:
    /// The session of a survey that an event is answered with.
    std::unique_ptr<SurveySession> start(const QByteArray &locale = "en") {
        hold(fiveQuestions, locale);
        return core->startSurvey();
    }
    /// What the service was told since the last call, without what differs from run to run.
    QStringList told() {
        const QStringList before = std::exchange(m_told, history());
        for (const QStringList &response : responses())
            m_told += response;
        QStringList since = m_told;
        for (const QString &known : before)
            since.removeOne(known);
        return since;
    }

private:
    QStringList m_told;
};

TEST_F(SurveySessionTest, HasTheAppearanceThatWasSetWhenItBegan) {
    answer("GET /1/environments/env/config", {200, R"({"theme":"dark","border":"#0000ff"})"});
    core = KestrioCore::make(context());
    core->configure(u"env"_s);
    finish();
    const auto cardOf = [this](SurveyAppearance appearance) {
        core->setAppearance(appearance);
        const auto session = start();
        core->setAppearance(SurveyAppearance::light);
        return session->palette().card;
    };
    EXPECT_EQ(cardOf(SurveyAppearance::light), Qt::white);
    EXPECT_EQ(cardOf(SurveyAppearance::service), cardOf(SurveyAppearance::dark));
    EXPECT_NE(cardOf(SurveyAppearance::dark), Qt::white);
    EXPECT_EQ(cardOf(SurveyAppearance::system), window.palette().color(QPalette::Window));
    EXPECT_EQ(start()->palette().accent, Qt::blue);
}

TEST_F(SurveySessionTest, ReportsWhatTheCardReports) {
    hold(fiveQuestions, "en");
    core->presentSurvey(&window);
    finish();
    click(u"Option 9"_s);
    click(u"Option 4"_s);
    click(u"Multi-choice option: Red"_s);
    click(u"Multi-select option: Blue"_s);
    click(u"Multi-select submit button"_s);
    click(u"Open question button"_s);
    survey()->dismiss(false);
    const QStringList byCard = told();

    std::unique_ptr<SurveySession> session = start();
    const QSignalSpy shown(session.get(), &SurveySession::shown);
    const QVariantList answers{9, 4.0, QVariantMap{{u"1"_s, u"red"_s}},
                               QVariantMap{{u"2"_s, true}, {u"1"_s, false}}, QString()};
    for (const QVariant &answer : answers) {
        session->markSeen();
        EXPECT_TRUE(session->answer(answer)) << qPrintable(session->currentQuestion().text);
    }
    EXPECT_TRUE(session->isComplete());
    EXPECT_EQ(shown.size(), 1);
    session.reset();
    EXPECT_EQ(told(), byCard);
    EXPECT_FALSE(core->survey());
}

TEST_F(SurveySessionTest, RefusesUnsuitableAnswers) {
    const auto session = start();
    const QVariantMap red{{u"1"_s, u"red"_s}};
    const std::pair<QVariantList, QVariant> cases[] = {
        {{11, -1, 2.5, u"3"_s, true, QVariant(), red}, 10},
        {{0, 6}, 1},
        {{u"red"_s, QVariantMap(), QVariantMap{{u"1"_s, u"blue"_s}},
          QVariantMap{{QString(), u"none"_s}}},
         red},
        {{red, 1, QVariantMap{{u"3"_s, true}}}, QVariantMap()},
        {{1, red}, u"because"_s},
    };
    for (int index = 0; const auto &[refused, accepted] : cases) {
        for (const QVariant &answer : refused)
            EXPECT_FALSE(session->answer(answer)) << index;
        EXPECT_EQ(session->currentIndex(), index++);
        EXPECT_TRUE(session->answer(accepted));
    }
    EXPECT_FALSE(session->answer(u"too late"_s) || session->answer(7, 1));
    session->finish();
    EXPECT_FALSE(session->answer(0, 1));
    EXPECT_EQ(responses(), QList<QStringList>({{u"11=10"_s, u"12=1"_s, uR"(13={"1":"red"})"_s,
                                                u"14={}"_s, u"15=\"because\""_s}}));
}

TEST_F(SurveySessionTest, FollowsRoutesAndSaysWhatScreensShow) {
    const auto session = start("ar");
    EXPECT_EQ(session->texts().thanks, AnyLanguageBundle(u"ar"_s).localizedString(u"Thanks!"_s));
    const QList<SurveyQuestion> questions = session->questions();
    EXPECT_EQ(questions[0].lastLabel, u"Extremely likely"_s);
    EXPECT_NE(questions[3].actionText, questions[4].actionText);
    const QSignalSpy changes(session.get(), &SurveySession::currentQuestionChanged);
    session->answer(2);
    EXPECT_EQ(session->currentQuestion().text, u"Why?"_s);
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(SurveySessionTest, EndsOnceAndLetsNoOtherSurveyStartMeanwhile) {
    auto session = start();
    session->markSeen();
    session->answer(9);
    EXPECT_FALSE(core->startSurvey() || core->startDebugSurvey());
    core->presentSurvey(&window);
    EXPECT_FALSE(survey());
    QSignalSpy ends(session.get(), &SurveySession::ended);
    session->close();
    session->finish();
    EXPECT_EQ(ends.size(), 1);
    session.reset();
    EXPECT_EQ(told(), QStringList({u"closed 12"_s, u"seen"_s, u"seen 11"_s, u"11=9"_s}));

    session = start();
    session->answer(9);
    session.reset();
    EXPECT_EQ(told(), QStringList({u"closed 12"_s, u"11=9"_s}));
}

TEST_F(SurveySessionTest, GoesWithoutAReportWhenConsentIsWithdrawn) {
    present(fiveQuestions);
    click(u"Option 9"_s);
    told();
    core->withdrawConsent();
    finish();
    EXPECT_FALSE(survey() || core->survey());
    EXPECT_EQ(told(), QStringList());
}

} // namespace KestrioKit
