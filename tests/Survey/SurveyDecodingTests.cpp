#include "KestrioKit/Survey/Survey.h"

#include <gtest/gtest.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

template <typename Record>
std::optional<Record> decoded(const QByteArray &json) {
    auto result = decodeJSON<Record>(json);
    if (auto *const record = std::get_if<Record>(&result))
        return *record;
    return std::nullopt;
}

template <typename Record>
QString failurePath(const QByteArray &json) {
    const auto result = decodeJSON<Record>(json);
    const auto *const error = std::get_if<DecodingError>(&result);
    return error ? error->path : u"decoded"_s;
}

// A survey with one question of the given type and further members.
QByteArray surveyOf(const QByteArray &type, const QByteArray &props = {}) {
    return R"({"vid":1,"questions":[{"name":2,"type":)" + type + R"(,"props":{"message":"Why?")" +
           props + "}}]}";
}

} // namespace

TEST(SurveyDecoding, readsEveryField) {
    const auto survey = decoded<Survey>(R"({"unitId":1,"vid":2,"delay":3,"surveyId":4,
        "responseGroupUid":"g","locale":"fr","more":{},"questions":[{"unitId":5,"name":6,
        "type":"likert","props":{"message":"m","introText":"i","labels":{"left":"l","right":"r"},
        "options":[{"id":7,"label":"a","value":"b"},{"id":"7","label":"c","value":"d"}],
        "routingOptions":[{"comparator":"gte","value":8,"target":-9}]}}]})");
    const Details details{u"m"_s,
                          u"i"_s,
                          Labels{u"l"_s, u"r"_s},
                          {{{7, u"a"_s, u"b"_s}, {{}, u"c"_s, u"d"_s}}},
                          {{{{SurveyLogicComparator::gte, {}}, {8}, -9}}}};
    const Question question{5, 6, {QuestionType::likert, {}}, details};
    const Survey expected{1, 2, {question}, 3, 4, u"g"_s, u"fr"_s};
    EXPECT_EQ(survey, expected);
}

TEST(SurveyDecoding, failsAsAWholeWhereSomethingRequiredIsWrong) {
    const std::pair<QByteArray, QString> cases[] = {
        {R"({"questions":[]})", u"vid"_s},
        {R"({"vid":"1","questions":[]})", u"vid"_s},
        {R"({"vid":1.5,"questions":null})", u"vid"_s},
        {R"({"vid":1,"questions":[{"name":1,"type":"nps"}]})", u"questions[0].props"_s},
        {R"({"vid":1,"questions":[{"type":"nps","props":{"message":""}}]})",
         u"questions[0].name"_s},
        {R"({"vid":1,"questions":[{"name":1,"type":"nps","props":{}}]})",
         u"questions[0].props.message"_s},
        {R"([])", u""_s},
    };
    for (const auto &[json, path] : cases)
        EXPECT_EQ(failurePath<Survey>(json), path) << json.constData();
}

TEST(SurveyDecoding, takesNullForNoSurvey) {
    using MaybeSurvey = std::optional<Survey>;
    EXPECT_EQ(std::get<MaybeSurvey>(decodeJSON<MaybeSurvey>("null")), std::nullopt);
    EXPECT_EQ(failurePath<MaybeSurvey>("{}"), u"vid"_s);
}

TEST(SurveyDecoding, dropsMalformedOptionalFieldsAlone) {
    const auto survey = decoded<Survey>(
        R"({"unitId":"1","vid":0,"questions":[],"delay":"5","surveyId":1.5,
            "responseGroupUid":3,"locale":["fr"]})");
    EXPECT_EQ(survey, Survey());

    const auto plain = decoded<Survey>(surveyOf(R"("nps")"));
    ASSERT_TRUE(plain);
    for (const char *props : {R"(,"introText":5)", R"(,"labels":{"left":"l"})", R"(,"labels":"l")",
                              R"(,"options":[{"label":"a","value":"b"},{"value":"c"}])",
                              R"(,"routingOptions":[{"comparator":"eq","value":true,"target":1}])",
                              R"(,"routingOptions":[{"comparator":"eq","value":1}])"})
        EXPECT_EQ(decoded<Survey>(surveyOf(R"("nps")", props)), plain) << props;
}

TEST(SurveyDecoding, knowsQuestionTypesByTheirExactNames) {
    const std::pair<QByteArray, QuestionType> cases[] = {
        {R"("open")", {QuestionType::open, {}}},
        {R"("likert")", {QuestionType::likert, {}}},
        {R"("multiplechoice")", {QuestionType::multipleChoice, {}}},
        {R"("multipleselect")", {QuestionType::multiSelect, {}}},
        {R"("nps")", {QuestionType::nps, {}}},
        {R"("multipleChoice")", {QuestionType::other, u"multipleChoice"_s}},
        {"5", {QuestionType::other, u"invalid"_s}},
    };
    for (const auto &[json, type] : cases)
        EXPECT_EQ(decoded<Survey>(surveyOf(json)).value().questions.first().type, type);
}

TEST(SurveyDecoding, preflightRefusesWhatIsUnknown) {
    const auto rule = [](const QByteArray &comparator) {
        return R"(,"routingOptions":[{"comparator":"eq","value":1,"target":1},{"comparator":)" +
               comparator + R"(,"value":1,"target":1}])";
    };
    const std::pair<QByteArray, bool> cases[] = {
        {R"({"vid":1,"questions":[]})", true},
        {surveyOf(R"("nps")"), true},
        {surveyOf(R"("slider")"), false},
        {surveyOf(R"("nps")", rule(R"("answered")")), true},
        {surveyOf(R"("nps")", rule(R"("contains")")), false},
        {surveyOf(R"("nps")", rule("7")), false},
    };
    for (const auto &[json, presentable] : cases)
        EXPECT_EQ(decoded<Survey>(json).value().preflight(), presentable) << json.constData();
}

TEST(DynamicValue, hasFourFormsAndIsWrittenBare) {
    using Value = CodableDynamicType;
    const std::pair<QByteArray, Value> cases[] = {
        {"9007199254740993", Value::intValue(9007199254740993)},
        {R"("7")", Value::stringValue(u"7"_s)},
        {R"({"a":true,"b":false})", Value::dictBoolValue({{u"a"_s, true}, {u"b"_s, false}})},
        {R"({"a":"true"})", Value::dictStringValue({{u"a"_s, u"true"_s}})},
        {"{}", Value::dictBoolValue({})},
    };
    for (const auto &[json, value] : cases) {
        EXPECT_EQ(decoded<Value>(json), value) << json.constData();
        EXPECT_EQ(encodeJSON(value), json);
    }
    EXPECT_EQ(decoded<Value>("5.0"), Value::intValue(5));
}

TEST(DynamicValue, refusesOtherForms) {
    for (const char *json :
         {"true", "null", "5.5", "1e30", "[1]", R"({"a":1})", R"({"a":true,"b":"c"})"}) {
        const auto result = decodeJSON<CodableDynamicType>(json);
        ASSERT_TRUE(std::holds_alternative<DecodingError>(result)) << json;
        EXPECT_EQ(std::get<DecodingError>(result).description, u"Type is not supported"_s);
    }
}
