#include "KestrioKit/Service/KestrioSurveyResponder.h"
#include "tests/support/OnlineFixture.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

using KestrioSurveyResponderTest = OnlineFixture;

TEST_F(KestrioSurveyResponderTest, ReportsTheSurveyOnceEachQuestionEveryTimeAndTheEndOnce) {
    const auto api = std::make_shared<KestrioService>(
        std::make_shared<KestrioServiceRequests>(clock), context());
    api->authorize(u"t"_s, 5);
    KestrioSurveyResponder responder(api, Survey{{}, 5, {}, {}, 7, u"g"_s, {}});
    responder.seen(2);
    responder.seen(2);
    responder.submit();
    for (const int value : {8, 9}) {
        responder.submitResponse(makeQuestionResponse({{}, 2, {}, {}}, {value}, 1.5, clock));
        responder.submit();
        responder.closed(2);
    }
    finish();
    QStringList actions;
    for (const QJsonObject &body : bodies("POST /1/visitors/5/surveys/7/history"))
        actions.append(body["action"_L1].toString());
    actions.sort(); // those sent at once may overtake one another
    EXPECT_EQ(actions, QStringList({u"closed"_s, u"seen"_s, u"seen"_s, u"seen"_s}));
    const auto submitted = bodies("POST /2/environments//visitors/5/responses/submit");
    ASSERT_EQ(submitted.size(), 1);
    EXPECT_EQ(submitted[0]["responses"_L1][0]["value"_L1], 8);
}

} // namespace KestrioKit
