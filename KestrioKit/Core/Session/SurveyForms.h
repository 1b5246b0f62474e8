#pragma once

#include "KestrioKit/Core/Platform/LanguageBundle.h"
#include "KestrioKit/Core/Survey/CodableDynamicType.h"
#include "KestrioKit/Core/Survey/Question.h"
#include "KestrioKit/SurveyQuestion.h"
#include "KestrioKit/SurveyTexts.h"

#include <optional>

namespace KestrioKit {

/// Returns the fixed texts in the bundle's language.
SurveyTexts textsToShow(const AnyLanguageBundle &bundle);

/// Returns what screens show of the questions. Buttons are labelled in the bundle's language.
QList<SurveyQuestion> questionsToShow(const QList<Question> &questions,
                                      const AnyLanguageBundle &bundle);

/// Converts `value` to an answer to the question, in the form that is submitted. Returns nothing if
/// `value` cannot answer the question.
std::optional<CodableDynamicType> answerTo(const SurveyQuestion &question, const QVariant &value);

} // namespace KestrioKit
