#include "KestrioKit/Core/Survey/Survey.h"
#include "KestrioKit/Core/Survey/Routing.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

/// That any answer, such as the pages give or the rules ask for, leads on, to a target or out.
void requireRoutes(const QList<Question> &questions, qint64 index) {
    const Details &details = questions.at(index).details;
    const auto rules = details.routingOptions.value_or(QList<RoutingOption>());
    QList<CodableDynamicType> answers{{0}, {10}, {u""_s}, {u"A\u0301"_s}};
    for (const Option &option : details.options.value_or(QList<Option>())) {
        const QString id = QString::number(option.id.value_or(0));
        answers.append(CodableDynamicType::dictStringValue({{id, option.value}}));
        answers.append(CodableDynamicType::dictBoolValue({{id, true}}));
    }
    for (const RoutingOption &rule : rules)
        answers.append(rule.value);
    for (const CodableDynamicType &answer : answers) {
        const qint64 next = nextQuestionIndex(questions, index, answer);
        const bool isTarget = std::ranges::count(rules, next, &RoutingOption::target) > 0;
        require(next == index + 1 || isTarget, "an answer leads on, or to a target");
        const bool inside = next >= 0 && next < questions.size();
        require(inside || nextQuestionIndex(questions, next, answer) == -1, "outside is the end");
    }
}

} // namespace

void tryInput(const QByteArray &text) {
    const std::optional<Survey> survey = decodedRecord<Survey>(text);
    for (qint64 index = 0; survey && index < survey->questions.size(); ++index) {
        const Details &details = survey->questions.at(index).details;
        requireSurvival(text, details.labels.value_or(Labels()));
        requireSurvival(text, details.options.value_or(QList<Option>()));
        for (const RoutingOption &rule : details.routingOptions.value_or(QList<RoutingOption>()))
            requireSurvival(text, rule.value);
        requireRoutes(survey->questions, index);
    }
}
