#pragma once

#include "KestrioKit/Core/Survey/Question.h"

#include <QList>

#include <optional>

namespace KestrioKit {

/// The index of the question that follows `questions[index]` once it has been answered with
/// `response`: the target of the first routing rule that applies, else the next in order. Any
/// result outside of the list ends the survey; -1 when `index` itself is outside.
///
/// A multiple-choice answer, a map whose only key is the option's id, is compared as that key.
qint64 nextQuestionIndex(const QList<Question> &questions, qint64 index,
                         const std::optional<CodableDynamicType> &response);

} // namespace KestrioKit
