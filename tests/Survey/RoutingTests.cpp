#include "KestrioKit/Survey/Routing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

using Comparator = SurveyLogicComparator;

template <typename Record>
Record decoded(const QByteArray &json) {
    return std::get<Record>(decodeJSON<Record>(json));
}

bool compares(Comparator::Kind kind, const QByteArray &response, const QByteArray &value) {
    return Comparator{kind, {}}.compare(decoded<CodableDynamicType>(response),
                                        decoded<CodableDynamicType>(value));
}

// The first of three questions has these rules.
qint64 nextAfterFirst(QuestionType::Kind type, const QByteArray &rules,
                      const QByteArray &response) {
    QList<Question> questions(3);
    questions[0].type.kind = type;
    questions[0].details.routingOptions = decoded<std::optional<QList<RoutingOption>>>(rules);
    return nextQuestionIndex(questions, 0, decoded<std::optional<CodableDynamicType>>(response));
}

} // namespace

TEST(Comparator, isReadFromItsName) {
    const Comparator expected[] = {{Comparator::eq, {}},
                                   {Comparator::neq, {}},
                                   {Comparator::gt, {}},
                                   {Comparator::gte, {}},
                                   {Comparator::lt, {}},
                                   {Comparator::lte, {}},
                                   {Comparator::answered, {}},
                                   {Comparator::other, u"EQ"_s},
                                   {Comparator::other, u"invalid"_s}};
    const auto read =
        decoded<QList<Comparator>>(R"(["eq","neq","gt","gte","lt","lte","answered","EQ",null])");
    EXPECT_TRUE(std::ranges::equal(read, expected));
}

TEST(Comparator, ordersIntegersOnly) {
    struct Case {
        Comparator::Kind kind;
        bool less, same, greater;
    };
    for (const auto &[kind, less, same, greater] :
         {Case{Comparator::gt, false, false, true}, Case{Comparator::gte, false, true, true},
          Case{Comparator::lt, true, false, false}, Case{Comparator::lte, true, true, false}}) {
        EXPECT_EQ(compares(kind, "-9223372036854775808", "5"), less);
        EXPECT_EQ(compares(kind, "5", "5"), same);
        EXPECT_EQ(compares(kind, "5", "-9223372036854775808"), greater);
        EXPECT_FALSE(compares(kind, R"("5")", "5") || compares(kind, "5", R"("5")"));
        EXPECT_FALSE(compares(kind, R"("5")", R"("5")"));
    }
}

TEST(Comparator, equalsTheSameFormAndPayload) {
    struct Case {
        QByteArray response, value;
        bool equal;
    };
    const Case cases[] = {
        {"5", "5", true},
        {"5", R"("5")", false},
        {R"("a")", R"("A")", false},
        {R"("caf\u00e9")", R"("cafe\u0301")", true},
        {R"("\ufb01")", R"("fi")", false},
        {R"({"\u00e9":"e\u0301"})", R"({"e\u0301":"\u00e9"})", true},
        {R"({"\u00e9":true})", R"({"e\u0301":true})", true},
        {R"({"a":true})", R"({"a":false})", false},
        {R"({"a":true})", R"({"a":true,"b":true})", false},
        {R"({"a":true})", R"({"a":"true"})", false},
    };
    for (const auto &[response, value, equal] : cases) {
        SCOPED_TRACE((response + " and " + value).constData());
        EXPECT_EQ(compares(Comparator::eq, response, value), equal);
        EXPECT_EQ(compares(Comparator::neq, response, value), !equal);
        EXPECT_TRUE(compares(Comparator::answered, response, value));
        EXPECT_FALSE(compares(Comparator::other, response, value));
    }
}

TEST(Routing, followsTheFirstRuleThatApplies) {
    const QByteArray rules = R"([{"comparator":"gt","value":5,"target":3},
        {"comparator":"contains","value":2,"target":7},
        {"comparator":"lt","value":0,"target":-4},{"comparator":"lte","value":2,"target":0}])";
    const std::pair<QByteArray, qint64> cases[] = {{"7", 3}, {"-1", -4},    {"2", 0},
                                                   {"4", 1}, {R"("7")", 1}, {"null", 1}};
    for (const auto &[response, next] : cases)
        EXPECT_EQ(nextAfterFirst(QuestionType::nps, rules, response), next) << response.constData();
    for (const char *noRules : {"null", "[]"})
        EXPECT_EQ(nextAfterFirst(QuestionType::nps, noRules, "7"), 1);
}

TEST(Routing, endsOutsideOfTheSurvey) {
    const QList<Question> questions(3);
    const auto answer = CodableDynamicType::intValue(1);
    EXPECT_EQ(nextQuestionIndex(questions, 2, answer), 3);
    for (const qint64 outside : {qint64(-1), qint64(3), std::numeric_limits<qint64>::max()})
        EXPECT_EQ(nextQuestionIndex(questions, outside, answer), -1);
}

TEST(Routing, comparesTheChosenOptionOfAMultipleChoiceQuestion) {
    const QByteArray rules = R"([{"comparator":"eq","value":"12","target":9}])";
    const QByteArray choice = R"({"12":"yes"})";
    EXPECT_EQ(nextAfterFirst(QuestionType::multipleChoice, rules, choice), 9);
    EXPECT_EQ(nextAfterFirst(QuestionType::multiSelect, rules, choice), 1);
    for (const char *response : {R"({"13":"12"})", "{}", R"({"12":true})"})
        EXPECT_EQ(nextAfterFirst(QuestionType::multipleChoice, rules, response), 1);
}
