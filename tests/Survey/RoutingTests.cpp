#include "KestrioKit/Survey/Routing.h"

#include <gtest/gtest.h>

using namespace KestrioKit;

namespace {

using Value = CodableDynamicType;

template <typename Record>
Record decoded(const QByteArray &json) {
    return std::get<Record>(decodeJSON<Record>(json));
}

/// Where the first of three questions leads by these rules.
qint64 next(QuestionType::Kind type, const QByteArray &rules, const QByteArray &response) {
    QList<Question> questions(3);
    questions[0].type.kind = type;
    questions[0].details.routingOptions = decoded<std::optional<QList<RoutingOption>>>(rules);
    return nextQuestionIndex(questions, 0, decoded<std::optional<Value>>(response));
}

} // namespace

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
