#include "KestrioKit/Survey/Survey.h"
#include "KestrioKit/Survey/Routing.h"
#include "tests/fuzz/Fuzzing.h"

#include <algorithm>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

/// Such as the pages give, and those that the rules ask for.
QList<CodableDynamicType> answers(const Details &details) {
    QList<CodableDynamicType> answers{{0}, {10}, {u""_s}, {u"A\u0301"_s}};
    for (const Option &option : details.options.value_or(QList<Option>())) {
        const QString id = QString::number(option.id.value_or(0));
        answers.append(CodableDynamicType::dictStringValue({{id, option.value}}));
        answers.append(CodableDynamicType::dictBoolValue({{id, true}}));
    }
    for (const RoutingOption &rule : details.routingOptions.value_or(QList<RoutingOption>()))
        answers.append(rule.value);
    return answers;
}

void requireOrder(const CodableDynamicType &left, const CodableDynamicType &right) {
    const auto holds = [](SurveyLogicComparator::Kind kind, const auto &first, const auto &second) {
        return SurveyLogicComparator{kind, {}}.compare(first, second);
    };
    using enum SurveyLogicComparator::Kind;
    const bool equal = holds(eq, left, right);
    const bool less = holds(lt, left, right);
    const bool greater = holds(gt, left, right);
    const bool ordered = left.asInt() && right.asInt();
    require(equal == holds(eq, right, left) && less == holds(gt, right, left), "sides can change");
    require(equal != holds(neq, left, right), "values are equal or not");
    require(int(equal) + int(less) + int(greater) == 1 || !ordered, "integers are ordered");
    require(holds(lte, left, right) == (ordered && !greater), "lte is not greater");
    require(holds(gte, left, right) == (ordered && !less), "gte is not less");
}

void requireRoutes(const QList<Question> &questions, qint64 index) {
    const Details &details = questions.at(index).details;
    const auto rules = details.routingOptions.value_or(QList<RoutingOption>());
    for (const CodableDynamicType &answer : answers(details)) {
        const qint64 next = nextQuestionIndex(questions, index, answer);
        const bool isTarget = std::ranges::count(rules, next, &RoutingOption::target) > 0;
        require(next == index + 1 || isTarget, "an answer leads on, or to a target");
        const bool inside = next >= 0 && next < questions.size();
        require(inside || nextQuestionIndex(questions, next, answer) == -1, "outside is the end");
        for (const RoutingOption &rule : rules)
            requireOrder(answer, rule.value);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = inputText(data, size);
    const std::optional<Survey> survey = decodedRecord<Survey>(text);
    if (!survey)
        return 0;
    for (qint64 index = 0; index < survey->questions.size(); ++index) {
        const Details &details = survey->questions.at(index).details;
        if (details.labels)
            requireSurvival(text, *details.labels);
        if (details.options)
            requireSurvival(text, *details.options);
        for (const RoutingOption &rule : details.routingOptions.value_or(QList<RoutingOption>()))
            requireSurvival(text, rule.value);
        requireRoutes(survey->questions, index);
    }
    return 0;
}
