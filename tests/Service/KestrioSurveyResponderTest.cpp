#include "KestrioKit/Service/KestrioSurveyResponder.h"
#include "tests/support/OnlineFixture.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

class KestrioSurveyResponderTest : public OnlineFixture {
protected:
    KestrioSurveyResponderTest() { api->authorize(u"t"_s, 5); }

    /// The events so far: "seen 2 new", "closed". Those sent at once may overtake one another.
    QStringList events() {
        finish();
        QStringList events;
        for (const QJsonObject &body : bodies("POST /1/visitors/5/surveys/7/history")) {
            const QString question = body.contains("qid"_L1)
                                         ? u' ' + QString::number(body["qid"_L1].toInt())
                                         : QString();
            const QString isNew = body["isNew"_L1].toBool() ? u" new"_s : QString();
            events.append(body["action"_L1].toString() + question + isNew);
        }
        events.sort();
        return events;
    }

    Request::SurveyQuestionResponse answered(CodableDynamicType value) const {
        return makeQuestionResponse({{}, 2, {QuestionType::open, {}}, {}}, std::move(value), 1.5,
                                    clock);
    }

    std::shared_ptr<KestrioService> api = std::make_shared<KestrioService>(
        std::make_shared<KestrioServiceRequests>(clock), context());
    Survey survey{{}, 5, {}, {}, 7, u"g"_s, {}};
};

TEST_F(KestrioSurveyResponderTest, ReportsTheSurveySeenOnceAndEachQuestionEveryTime) {
    KestrioSurveyResponder responder(api, survey);
    responder.seen(2);
    EXPECT_EQ(events(), QStringList({u"seen"_s, u"seen 2 new"_s}));
    responder.seen(2);
    EXPECT_EQ(events(), QStringList({u"seen"_s, u"seen 2 new"_s, u"seen 2 new"_s}));
}

TEST_F(KestrioSurveyResponderTest, ReportsClosingOnceAlsoAfterAllWasSubmitted) {
    KestrioSurveyResponder responder(api, survey);
    responder.submitResponse(answered({5}));
    responder.submit();
    responder.closed(2);
    responder.closed(std::nullopt);
    EXPECT_EQ(events(), QStringList{u"closed 2"_s});
}

TEST_F(KestrioSurveyResponderTest, SubmitsAllAnswersInOrderAndOnce) {
    KestrioSurveyResponder responder(api, survey);
    responder.submit();
    responder.submitResponse(answered({u""_s}));
    responder.submitResponse(answered({8}));
    responder.submit();
    responder.submitResponse(answered({9}));
    responder.submit();
    finish();
    const auto submitted = requests("POST /2/environments//visitors/5/responses/submit");
    ASSERT_EQ(submitted.size(), 1);
    EXPECT_TRUE(submitted[0].body.startsWith(
        R"({"responses":[{"questionId":2,"seenAt":1500.0},)"
        R"({"questionId":2,"seenAt":1500.0,"answeredAt":1700000000000.0,"value":8}],"meta":{)"))
        << submitted[0].body.toStdString();
}

TEST_F(KestrioSurveyResponderTest, ReportsNothingOfASurveyWithoutIdOrGroup) {
    for (const bool hasId : {true, false}) {
        hasId ? survey.responseGroupUid.reset() : survey.surveyId.reset();
        KestrioSurveyResponder responder(api, survey);
        responder.seen(2);
        responder.submitResponse(answered({5}));
        responder.closed(2);
        responder.submit();
        survey = {{}, 5, {}, {}, {}, u"g"_s, {}};
    }
    finish();
    EXPECT_EQ(lines(), QList<QByteArray>());
}

} // namespace KestrioKit
