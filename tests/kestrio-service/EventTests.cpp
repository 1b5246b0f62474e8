#include "tests/service/ServiceTest.h"

#include <regex>
#include <set>

using EventTests = ServiceTest;

TEST_F(EventTests, EventTriggersItsSurveyWithAFreshResponseGroup) {
    const std::regex uuid("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
    const Visitor visitor = newVisitor();
    std::set<std::string> groups;
    for (int i = 0; i < 2; ++i) {
        const auto survey = nlohmann::ordered_json::parse(
            send("POST", visitor.path("/events"), eventBody("Checkout Finished"), visitor.token)
                .body);
        std::vector<std::string> keys;
        for (const auto &[key, value] : survey.items())
            keys.push_back(key);
        EXPECT_EQ(keys, (std::vector<std::string>{"unitId", "vid", "questions", "delay", "surveyId",
                                                  "responseGroupUid", "locale"}));
        EXPECT_EQ(survey.at("vid"), visitor.id);
        const std::string group = survey.at("responseGroupUid");
        EXPECT_TRUE(std::regex_match(group, uuid)) << group;
        EXPECT_EQ(records("showings").back().at("responseGroupUid"), group);
        groups.insert(group);
    }
    EXPECT_EQ(groups.size(), 2U);
}

TEST_F(EventTests, EventWithoutASurveyIsAnsweredNull) {
    const Visitor visitor = newVisitor();
    const auto reply =
        send("POST", visitor.path("/events"), eventBody("Nothing Here"), visitor.token);
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body, "null");
}

TEST_F(EventTests, SurveyComesInTheFirstLanguageThereIs) {
    const std::pair<std::string, std::string> cases[] = {
        {"fr", "fr"},
        {"fr-CA, en;q=0.9", "fr"},
        {"en-GB, fr;q=0.9", "en"},
        {"de, FR_fr;q=0.9", "fr"},
        {"de", "en"},
        {"", "en"},
        {",;q=,, -", "en"},
    };
    const Visitor visitor = newVisitor();
    for (const auto &[wanted, given] : cases)
        EXPECT_EQ(send("POST", visitor.path("/events"), eventBody("Checkout Finished"),
                       visitor.token, {{"Accept-Language", wanted}})
                      .json()
                      .at("locale"),
                  given)
            << wanted;
}

TEST_F(EventTests, SingleEventsAndBatchesAreToldApartAndKeptAsTheyCame) {
    const Visitor visitor = newVisitor();
    const std::string single =
        R"({ "timestamp": 17.0, "event":"A","delayed":true,"metadata":{"z":1,"pg":"p","m":{"a":true}}})";
    const std::string batch = R"({"events":[)" + single + ',' + single + R"(],"timestamp":1})";
    EXPECT_EQ(send("POST", visitor.path("/events/batch"), batch, visitor.token).status, 200);
    EXPECT_EQ(send("POST", visitor.path("/events"), single, visitor.token).status, 200);
    const auto events = records("events");
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events.at(0).at("kind"), "batch");
    EXPECT_EQ(events.at(1).at("kind"), "single");
    EXPECT_LT(events.at(0).at("order"), events.at(1).at("order"));
    EXPECT_NE(send("GET", "/records").body.find("\"body\":" + batch), std::string::npos);
}

TEST_F(EventTests, SurveysAreFetchedByTheirId) {
    const Visitor visitor = newVisitor();
    const auto fetch = [&](const std::string &query) {
        return send("GET", "/1/environments/demo/questions" + query, {}, visitor.token);
    };
    const auto survey = fetch("?surveyid=4&vid=0").json();
    EXPECT_EQ(survey.at("surveyId"), 4);
    EXPECT_EQ(survey.at("vid"), visitor.id);
    EXPECT_EQ(fetch("?surveyid=999&vid=0").status, 404);
    EXPECT_EQ(fetch("?surveyid=four&vid=0").status, 400);
    EXPECT_EQ(fetch("").status, 400);
}

TEST_F(EventTests, SampleShowsEveryQuestionTypeAndComparator) {
    const Visitor visitor = newVisitor();
    std::set<std::string> types;
    std::set<std::string> comparators;
    std::set<std::string> locales;
    for (int id = 1; id <= 5; ++id) {
        const auto survey =
            send("GET", "/1/environments/demo/questions?surveyid=" + std::to_string(id), {},
                 visitor.token)
                .json();
        locales.insert(survey.at("locale"));
        for (const auto &question : survey.at("questions")) {
            types.insert(question.at("type"));
            for (const auto &rule :
                 question.at("props").value("routingOptions", nlohmann::json::array()))
                comparators.insert(rule.at("comparator"));
        }
    }
    EXPECT_EQ(types,
              (std::set<std::string>{"likert", "multiplechoice", "multipleselect", "nps", "open"}));
    EXPECT_EQ(comparators,
              (std::set<std::string>{"answered", "eq", "gt", "gte", "lt", "lte", "neq"}));
    EXPECT_EQ(locales, (std::set<std::string>{"en", "fr"}));
}
