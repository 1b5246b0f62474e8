#include "KestrioKit/Survey/Survey.h"

#include <gtest/gtest.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

Survey decoded(const QByteArray &json) {
    return std::get<Survey>(decodeJSON<Survey>(json));
}

/// A survey with one question of the given type and further properties.
QByteArray surveyOf(const QByteArray &type, const QByteArray &props = {}) {
    return R"({"vid":1,"questions":[{"name":2,"type":")" + type + R"(","props":{"message":"Why?")" +
           props + "}}]}";
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

TEST(SurveyDecoding, failsAsAWholeWhereSomethingRequiredIsWrong) {
    const auto failed = decodeJSON<Survey>(surveyOf("nps").replace(R"("Why?")", "5"));
    EXPECT_EQ(std::get<DecodingError>(failed).path, u"questions[0].props.message"_s);
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
    using Value = CodableDynamicType;
    for (const char *json : {"9007199254740993", R"("7")", R"({"a":true})", R"({"a":"true"})"})
        EXPECT_EQ(encodeJSON(std::get<Value>(decodeJSON<Value>(json))), json);
    for (const char *json : {"true", "null", "5.5", "1e30", "[1]", R"({"a":true,"b":"c"})"})
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeJSON<Value>(json))) << json;
}
