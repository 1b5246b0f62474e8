#include "KestrioKit/Service/KestrioSurveyResponder.h"
#include "tests/support/OnlineFixture.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

class KestrioSurveyResponderTest : public OnlineFixture {
protected:
    KestrioSurveyResponderTest() { api->authorize(u"t"_s, 5); }

    /// The actions so far. Those sent at once may overtake one another.
    QStringList actions() {
        finish();
        QStringList actions;
        for (const QJsonObject &body : bodies("POST /1/visitors/5/surveys/7/history"))
            actions.append(body["action"_L1].toString());
        actions.sort();
        return actions;
    }

    Request::SurveyQuestionResponse answered(CodableDynamicType value) const {
        return makeQuestionResponse({{}, 2, {}, {}}, std::move(value), 1.5, clock);
    }

    std::shared_ptr<KestrioService> api = std::make_shared<KestrioService>(
        std::make_shared<KestrioServiceRequests>(clock), context());
    const Survey survey{{}, 5, {}, {}, 7, u"g"_s, {}};
};

TEST_F(KestrioSurveyResponderTest, ReportsTheSurveyOnceAndEachQuestionEveryTime) {
    KestrioSurveyResponder responder(api, survey);
    responder.seen(2);
    responder.seen(2);
    EXPECT_EQ(actions(), QStringList({u"seen"_s, u"seen"_s, u"seen"_s}));
    responder.submit();
    for (const int value : {8, 9}) {
        responder.submitResponse(answered({value}));
        responder.submit();
        responder.closed(2);
    }
    EXPECT_EQ(actions(), QStringList({u"closed"_s, u"seen"_s, u"seen"_s, u"seen"_s}));
    const auto submitted = bodies("POST /2/environments//visitors/5/responses/submit");
    ASSERT_EQ(submitted.size(), 1);
    EXPECT_EQ(submitted[0]["responses"_L1][0]["value"_L1], 8);
}

TEST_F(KestrioSurveyResponderTest, ReportsNothingOfASurveyWithoutIdOrGroup) {
    for (const Survey &unreported :
         {Survey{{}, 5, {}, {}, {}, u"g"_s, {}}, Survey{{}, 5, {}, {}, 7, {}, {}}}) {
        KestrioSurveyResponder responder(api, unreported);
        responder.seen(2);
        responder.submitResponse(answered({5}));
        responder.closed(2);
        responder.submit();
    }
    finish();
    EXPECT_EQ(lines(), QList<QByteArray>());
}

} // namespace KestrioKit
