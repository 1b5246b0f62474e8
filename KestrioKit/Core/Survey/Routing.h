#pragma once

#include "KestrioKit/Core/Survey/Question.h"

#include <QList>

#include <optional>

namespace KestrioKit {

/// Returns the index of the question that follows `questions[index]` after the answer `response`.
/// This is the target of the first routing rule that applies, or `index + 1` if none does or there
/// is no answer. A result outside the list ends the survey. Returns -1 if `index` is outside the
/// list.
///
/// The answer to a multiple-choice question is a map whose only key is the option's id. Rules
/// compare that key.
qint64 nextQuestionIndex(const QList<Question> &questions, qint64 index,
                         const std::optional<CodableDynamicType> &response);

} // namespace KestrioKit
