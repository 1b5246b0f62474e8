#include "KestrioKit/Core/Survey/Survey.h"

#include <algorithm>

namespace KestrioKit {

namespace {

bool isKnown(const RoutingOption &option) {
    return option.comparator.kind != SurveyLogicComparator::other;
}

bool isKnown(const Question &question) {
    if (question.type.kind == QuestionType::other)
        return false;
    const auto &rules = question.details.routingOptions;
    return !rules ||
           std::ranges::all_of(*rules, [](const RoutingOption &rule) { return isKnown(rule); });
}

} // namespace

bool Survey::preflight() const {
    return std::ranges::all_of(questions,
                               [](const Question &question) { return isKnown(question); });
}

} // namespace KestrioKit
