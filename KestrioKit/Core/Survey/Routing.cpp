#include "KestrioKit/Core/Survey/Routing.h"

namespace KestrioKit {

namespace {

CodableDynamicType comparableForm(const Question &question, const CodableDynamicType &response) {
    const auto *const choice = response.asDictString();
    if (question.type.kind == QuestionType::multipleChoice && choice && !choice->isEmpty())
        return CodableDynamicType::stringValue(choice->firstKey());
    return response;
}

} // namespace

qint64 nextQuestionIndex(const QList<Question> &questions, qint64 index,
                         const std::optional<CodableDynamicType> &response) {
    if (index < 0 || index >= questions.size())
        return -1;
    const Question &question = questions.at(index);
    const auto &rules = question.details.routingOptions;
    if (!rules || !response)
        return index + 1;
    const CodableDynamicType answer = comparableForm(question, *response);
    for (const RoutingOption &rule : *rules) {
        if (rule.comparator.compare(answer, rule.value))
            return rule.target;
    }
    return index + 1;
}

} // namespace KestrioKit
