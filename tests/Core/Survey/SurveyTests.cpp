#include "KestrioKit/Core/Survey/Routing.h"
#include "KestrioKit/Core/Survey/Survey.h"

#include <gtest/gtest.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

using Value = CodableDynamicType;

template <typename Record = Survey>
Record decoded(const QByteArray &json) {
    return std::get<Record>(decodeJSON<Record>(json));
}

/// A survey with one question of the given type and further properties.
QByteArray surveyOf(const QByteArray &type, const QByteArray &props = {}) {
    return R"({"vid":1,"questions":[{"name":2,"type":")" + type + R"(","props":{"message":"Why?")" +
           props + "}}]}";
}

/// Where the first of three questions leads by these rules.
qint64 next(QuestionType::Kind type, const QByteArray &rules, const QByteArray &response) {
    QList<Question> questions(3);
    questions[0].type.kind = type;
    questions[0].details.routingOptions = decoded<std::optional<QList<RoutingOption>>>(rules);
    return nextQuestionIndex(questions, 0, decoded<std::optional<Value>>(response));
}

} // namespace

TEST(SurveyDecoding, readsEveryField) {
    const Survey survey = decoded(R"({"unitId":1,"vid":2,"delay":3,"surveyId":4,
        "responseGroupUid":"g","locale":"fr","more":{},"questions":[{"unitId":5,"name":6,
        "type":"likert","props":{"message":"m","introText":"i","labels":{"left":"l","right":"r"},
        "options":[{"id":7,"label":"a","value":"b"},{"id":"7","label":"c","value":"d"}],
        "routingOptions":[{"comparator":"gte","value":8,"target":-9}]}}]})");
    const QList<Option> options{{7, u"a"_s, u"b"_s}, {{}, u"c"_s, u"d"_s}};
    const QList<RoutingOption> rules{{{SurveyLogicComparator::gte, {}}, {8}, -9}};
    const Details details{u"m"_s, u"i"_s, Labels{u"l"_s, u"r"_s}, options, rules};
    const Question question{5, 6, {QuestionType::likert, {}}, details};
    EXPECT_EQ(survey, (Survey{1, 2, {question}, 3, 4, u"g"_s, u"fr"_s}));
}

TEST(SurveyDecoding, dropsMalformedOptionalFieldsAlone) {
    const QByteArray malformed = R"("unitId":"1","delay":"5","surveyId":1.5,"locale":["fr"])";
    EXPECT_EQ(decoded(R"({"vid":0,"questions":[],)" + malformed + '}'), Survey());
    for (const char *props : {R"(,"introText":5,"labels":{"left":"l"})",
                              R"(,"options":[{"label":"a","value":"b"},{"value":"c"}])",
                              R"(,"routingOptions":[{"comparator":"eq","value":true,"target":1}])"})
        EXPECT_EQ(decoded(surveyOf("nps", props)), decoded(surveyOf("nps"))) << props;
}

TEST(SurveyDecoding, preflightRefusesWhatIsUnknown) {
    for (const char *type : {"open", "likert", "multiplechoice", "multipleselect", "nps"})
        EXPECT_TRUE(decoded(surveyOf(type)).preflight()) << type;
    EXPECT_FALSE(decoded(surveyOf("multipleChoice")).preflight());
    for (const QByteArray comparator : {R"("contains")", "7", R"("answered")"}) {
        const auto rule = R"(,"routingOptions":[{"value":1,"target":1,"comparator":)" + comparator;
        EXPECT_EQ(decoded(surveyOf("nps", rule + "}]")).preflight(), comparator == "\"answered\"");
    }
}

TEST(DynamicValue, hasFourFormsAndIsWrittenBare) {
    for (const char *json : {"9007199254740993", R"("7")", R"({"a":true})", R"({"a":"true"})"})
        EXPECT_EQ(encodeJSON(decoded<Value>(json)), json);
    for (const char *json : {"true", "null", "5.5", "1e30", "[1]", R"({"a":true,"b":"c"})"})
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeJSON<Value>(json))) << json;
}

TEST(Comparator, comparesFormAndPayload) {
    const std::tuple<QByteArray, QByteArray, QByteArray> cases[] = {
        {"-9223372036854775808", "5", "neq lt lte"},
        {"5", "5", "eq gte lte"},
        {"5", "-9223372036854775808", "neq gt gte"},
        {"5", R"("5")", "neq"},
        {R"("5")", R"("5")", "eq"},
        {R"("caf\u00e9")", R"("cafe\u0301")", "eq"},
        {R"({"\u00e9":"e\u0301"})", R"({"e\u0301":"\u00e9"})", "eq"},
        {R"({"a":true})", R"({"a":"true"})", "neq"},
    };
    for (const auto &[response, value, matching] : cases) {
        QByteArrayList matched;
        for (const char *name : {"eq", "neq", "gt", "gte", "lt", "lte", "answered", "EQ"}) {
            const auto comparator =
                decoded<QList<SurveyLogicComparator>>(QByteArray("[\"") + name + "\"]");
            if (comparator[0].compare(decoded<Value>(response), decoded<Value>(value)))
                matched.append(name);
        }
        EXPECT_EQ(matched.join(' '), matching + " answered") << response.constData();
    }
}

TEST(Routing, followsTheFirstRuleThatApplies) {
    const QByteArray rules = R"([{"comparator":"gt","value":5,"target":3},
        {"comparator":"contains","value":2,"target":7},
        {"comparator":"lt","value":0,"target":-4},{"comparator":"lte","value":2,"target":0}])";
    const std::pair<QByteArray, qint64> cases[] = {{"7", 3}, {"-1", -4},    {"2", 0},
                                                   {"4", 1}, {R"("7")", 1}, {"null", 1}};
    for (const auto &[response, target] : cases)
        EXPECT_EQ(next(QuestionType::nps, rules, response), target) << response.constData();
    for (const qint64 outside : {-1, 3})
        EXPECT_EQ(nextQuestionIndex(QList<Question>(3), outside, {}), -1);
}

TEST(Routing, comparesTheChosenOptionOfAMultipleChoiceQuestion) {
    const QByteArray rule = R"([{"comparator":"eq","value":"12","target":9}])";
    EXPECT_EQ(next(QuestionType::multipleChoice, rule, R"({"12":"yes"})"), 9);
    EXPECT_EQ(next(QuestionType::multiSelect, rule, R"({"12":"yes"})"), 1);
    EXPECT_EQ(next(QuestionType::multipleChoice, rule, "{}"), 1);
}
