#include "tests/service/ServiceTest.h"

using VisitorTests = ServiceTest;

TEST_F(VisitorTests, AnonymousVisitorsAreNewUnlessTheyBearTheirToken) {
    const Visitor first = newVisitor();
    const Visitor second = newVisitor();
    EXPECT_NE(first.id, second.id);
    EXPECT_NE(first.token, second.token);
    const auto again = send("POST", "/1/environments/demo/visitors", "{}", first.token);
    EXPECT_EQ(again.json(), (nlohmann::json{{"vid", first.id}, {"token", first.token}}));
    const auto elsewhere = send("POST", "/1/environments/other/visitors", "{}", first.token);
    EXPECT_NE(elsewhere.json().at("vid"), first.id);
}

TEST_F(VisitorTests, UserIsFoundAgainInItsEnvironmentOnly) {
    const Visitor user = newVisitor("demo", R"({"userId":"user-7"})");
    EXPECT_EQ(newVisitor("demo", R"({"userId":"user-7"})").token, user.token);
    EXPECT_NE(newVisitor("other", R"({"userId":"user-7"})").id, user.id);
    EXPECT_NE(newVisitor("demo", R"({"userId":"user-8"})").id, user.id);
}

TEST_F(VisitorTests, PutAttachesAUserOrAnswersItsVisitor) {
    const auto identify = [this](const Visitor &visitor, const std::string &user) {
        return send("PUT", "/1/environments/demo/visitors/" + std::to_string(visitor.id),
                    nlohmann::json{{"userId", user}}.dump(), visitor.token);
    };
    const Visitor first = newVisitor();
    const Visitor second = newVisitor();
    const std::string attached = R"({"vid":)" + std::to_string(first.id) + R"(,"token":")" +
                                 first.token + R"(","userId":"user-7"})";
    EXPECT_EQ(identify(first, "user-7").body, attached);
    EXPECT_EQ(identify(second, "user-7").body, attached);
    EXPECT_NE(identify(first, "user-9").json().at("vid"), first.id) << "one visitor is one user";
    EXPECT_EQ(records("visitors").at(0).at("userId"), "user-7");
}

TEST_F(VisitorTests, WhatBelongsToAVisitorNeedsItsToken) {
    const Visitor visitor = newVisitor();
    const Visitor stranger = newVisitor();
    const std::pair<std::string, std::string> resources[] = {
        {"POST", visitor.path("/events")},
        {"POST", visitor.path("/events/batch")},
        {"PUT", "/1/environments/demo/visitors/" + std::to_string(visitor.id)},
        {"PUT", visitor.path("/attributes/plan")},
        {"PUT", visitor.bulkPath("demo", "/attributes")},
        {"DELETE", visitor.bulkPath("demo", "/attributes")},
        {"POST", visitor.path("/surveys/1/history")},
        {"POST", visitor.bulkPath("demo", "/responses/submit")},
    };
    for (const auto &[method, path] : resources) {
        for (const std::string &token : {std::string(), std::string("wrong"), stranger.token})
            EXPECT_EQ(send(method, path, "{}", token).status, 401) << method << ' ' << path;
        // The wrong body shows that the token was taken.
        EXPECT_EQ(send(method, path, "[]", visitor.token).status, 400) << method << ' ' << path;
    }
    const std::string survey = "/1/environments/demo/questions?surveyid=1&vid=0";
    EXPECT_EQ(send("GET", survey).status, 401);
    EXPECT_EQ(send("GET", survey, {}, newVisitor("other").token).status, 401);
    EXPECT_EQ(send("GET", survey, {}, visitor.token).status, 200);
}

TEST_F(VisitorTests, EnvironmentIdsArriveWhole) {
    const std::pair<std::string, std::string> ids[] = {
        {"", ""},
        {"a%20b", "a b"},
        {"a/b", "a/b"},
        {"a%2Fvisitors%3Fc", "a/visitors?c"},
        {"50%25", "50%"},
        {"%22%F0%9F%98%80", "\"\U0001F600"},
        {"config", "config"},
        {"visitors/7", "visitors/7"},
    };
    for (const auto &[encoded, id] : ids) {
        EXPECT_EQ(send("GET", "/1/environments/" + encoded + "/config").status, 200) << id;
        const Visitor visitor = newVisitor(encoded);
        EXPECT_EQ(send("PUT", visitor.bulkPath(encoded, "/attributes"), "{}", visitor.token).status,
                  200)
            << id;
        EXPECT_EQ(records("visitors").back().at("environment"), id);
    }
}
