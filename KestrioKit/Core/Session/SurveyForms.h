#pragma once

#include "KestrioKit/Core/Platform/LanguageBundle.h"
#include "KestrioKit/Core/Survey/CodableDynamicType.h"
#include "KestrioKit/Core/Survey/Question.h"
#include "KestrioKit/SurveyQuestion.h"
#include "KestrioKit/SurveyTexts.h"

#include <optional>

namespace KestrioKit {

/// The fixed texts, in the bundle's language.
SurveyTexts textsToShow(const AnyLanguageBundle &bundle);

/// What screens show of the questions, with buttons labelled in the bundle's language.
QList<SurveyQuestion> questionsToShow(const QList<Question> &questions,
                                      const AnyLanguageBundle &bundle);

/// The answer that `value` gives to the question, as it is submitted; absent when the question
/// cannot be answered with it.
std::optional<CodableDynamicType> answerTo(const SurveyQuestion &question, const QVariant &value);

} // namespace KestrioKit
