#include "tests/service/ServiceTest.h"

using ReportTests = ServiceTest;

TEST_F(ReportTests, ResponseIsKeptWithTheSurveyThatWasShown) {
    const Visitor visitor = newVisitor();
    const std::string group =
        send("POST", visitor.path("/events"), eventBody("Plan Cancelled"), visitor.token)
            .json()
            .at("responseGroupUid");
    const auto respond = [this](const Visitor &from, const std::string &responseGroup) {
        const std::string body =
            R"({"responses":[{"questionId":45,"seenAt":1.5e12}],"meta":{"sw":1},"responseGroupUid":")" +
            responseGroup + "\"}";
        return send("POST", from.bulkPath("demo", "/responses/submit"), body, from.token).status;
    };
    EXPECT_EQ(respond(visitor, group), 200);
    EXPECT_EQ(respond(visitor, "unknown"), 200);
    EXPECT_EQ(respond(newVisitor(), group), 200);
    const auto responses = records("responses");
    ASSERT_EQ(responses.size(), 3U);
    EXPECT_EQ(responses.at(0).at("surveyId"), 4);
    EXPECT_EQ(responses.at(0).at("body").at("responses").at(0).at("questionId"), 45);
    EXPECT_EQ(responses.at(1).at("surveyId"), nullptr);
    EXPECT_EQ(responses.at(2).at("surveyId"), nullptr) << "shown to somebody else";
}

TEST_F(ReportTests, HistoryHasToNameTheVisitorAndSurveyOfItsPath) {
    const Visitor visitor = newVisitor();
    nlohmann::json event{{"eid", "demo"},  {"sid", 7},         {"vid", visitor.id},
                         {"isNew", false}, {"action", "seen"}, {"responseGroupUid", "G"}};
    const auto report = [&] {
        return send("POST", visitor.path("/surveys/7/history"), event.dump(), visitor.token);
    };
    EXPECT_EQ(report().status, 200);
    EXPECT_EQ(records("history").at(0).at("surveyId"), 7);
    event["sid"] = 8;
    EXPECT_EQ(report().error().substr(0, 4), "sid:");
    event["sid"] = 7;
    event["vid"] = visitor.id + 1;
    EXPECT_EQ(report().error().substr(0, 4), "vid:");
    EXPECT_EQ(records("history").size(), 1U);
}

TEST_F(ReportTests, ErrorsNeedNoTokenAndKeepTheirIdentifier) {
    const std::string body =
        R"({"envId":"demo","userAgent":"u","meta":{"detail":"x"},"err":{"message":"m"}})";
    EXPECT_EQ(send("POST", "/1/errors", body, {}, {{"x-ks-error", "kestrio-5-error"}}).status, 200);
    EXPECT_EQ(send("POST", "/1/errors", body).status, 200);
    const auto errors = records("errors");
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_EQ(errors.at(0).at("errorId"), "kestrio-5-error");
    EXPECT_EQ(errors.at(0).at("body"), nlohmann::json::parse(body));
    EXPECT_EQ(errors.at(1).at("errorId"), nullptr);
}
