#include "KestrioKit/Core/Service/KestrioSurveyResponder.h"
#include "tests/support/OnlineFixture.h"

#include <QJsonArray>

namespace KestrioKit {

using namespace Qt::StringLiterals;

// Read once.
[[maybe_unused]] static const bool levelChosen = qputenv("KESTRIO_LOG_LEVEL", "INFO");

class KestrioServiceTest : public OnlineFixture {
protected:
    KestrioServiceTest() { service->setEnvironmentId(u"env"_s); }

    std::shared_ptr<KestrioService> service = std::make_shared<KestrioService>(
        std::make_shared<KestrioServiceRequests>(clock), context());
};

TEST_F(KestrioServiceTest, TracesNoTokenAndNothingOfWhatIsRecorded) {
    answer("POST /1/environments/env/visitors", {200, R"({"vid":1,"token":"secret\"secret"})"});
    testing::internal::CaptureStdout();
    service->fetchVisitorIdentifier(u"user"_s, KestrioService::Authorization::none, [](auto &&) {});
    service->authorize(u"secret"_s, 1);
    service->setVisitorAttribute(u"!email"_s, u"a@b"_s, {});
    finish();
    const QString printed = QString::fromStdString(testing::internal::GetCapturedStdout());
    EXPECT_EQ(requests("PUT /1/visitors/1/attributes/!email").size(), 1);
    for (const QString &shown : {u"user"_s, u"***"_s, u"attributes/!email"_s})
        EXPECT_TRUE(printed.contains(shown)) << qPrintable(printed);
    for (const QString &hidden : {u"secret"_s, u"a@b"_s})
        EXPECT_FALSE(printed.contains(hidden)) << qPrintable(printed);
}

TEST_F(KestrioServiceTest, TakesTheNearestQueueLimitUntilThereIsAQueue) {
    flagsSource->change({});
    service->setQueueLimit(0);
    service->authorize(u"t"_s, 5);
    service->setQueueLimit(10);
    for (const QString &name : {u"a"_s, u"b"_s})
        service->queueEvent(name);
    settle();
    flagsSource->change(ReachabilityFlag::reachable);
    finish();
    EXPECT_EQ(bodies("POST /1/visitors/5/events/batch")[0]["events"_L1].toArray().size(), 1);
}

TEST_F(KestrioServiceTest, TakesAWholeAnswerOfAnyOtherStatusForNeitherValueNorError) {
    RecordingServer portal;
    for (const int status : {300, 301, 302, 303, 304, 307, 404, 503, 600}) {
        answer("GET /config", ServerAnswer::redirect(status, portal.url().toEncoded()));
        int told = 0;
        service->fetchConfig([&](const auto &answer) {
            EXPECT_FALSE(answer.value || answer.error) << status;
            told = answer.response ? answer.response->statusCode : 0;
        });
        finish();
        EXPECT_EQ(told, status);
        EXPECT_EQ(service->disabledError(), std::nullopt);
    }
}

TEST_F(KestrioServiceTest, ReportsErrorsWithWhatItKnows) {
    service->recordError({{}, 0, u"broken"_s}, u"main()"_s, {{u"plan"_s, {u"gold"_s}}});
    finish();
    const QJsonObject report = bodies("POST /1/errors")[0];
    EXPECT_EQ(report["envId"_L1], u"env"_s);
    EXPECT_EQ(report["meta"_L1]["plan"_L1], u"gold"_s);
    EXPECT_EQ(report["err"_L1],
              (QJsonObject{{u"message"_s, u"broken"_s}, {u"stack"_s, u"main()"_s}}));
    service->recordError({}, {});
    service->recordError({}, {});
    finish();
    // Those that are sent together may arrive in any order.
    QSet<QByteArray> ids;
    for (const RecordedRequest &request : requests("POST /1/errors"))
        ids.insert(request.header("x-ks-error").value_or("none"));
    EXPECT_EQ(ids.size(), 3);
}

TEST_F(KestrioServiceTest, ReportsASurveyOnceEachQuestionEveryTimeAndTheEndOnce) {
    service->authorize(u"t"_s, 5);
    KestrioSurveyResponder responder(service, Survey{{}, 5, {}, {}, 7, u"g"_s, {}});
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
    const auto submitted = bodies("POST /2/environments/env/visitors/5/responses/submit");
    ASSERT_EQ(submitted.size(), 1);
    EXPECT_EQ(submitted[0]["responses"_L1][0]["value"_L1], 8);
}

} // namespace KestrioKit
