#pragma once

#include "KestrioKit/Core/Survey/Details.h"
#include "KestrioKit/Core/Survey/QuestionType.h"

#include <optional>

namespace KestrioKit {

/// A question, which is one page of a survey.
struct Question {
    std::optional<qint64> unit;
    /// Identifies the question in survey events and responses.
    qint64 name = 0;
    /// The kind of answer that the question asks for.
    QuestionType type;
    /// The texts, options and routing rules.
    Details details;

    friend bool operator==(const Question &, const Question &) = default;
};

template <>
inline constexpr auto keyTable<Question> = std::tuple(lenient("unitId", &Question::unit),
                                                      required("name", &Question::name),
                                                      required("type", &Question::type),
                                                      required("props", &Question::details));

} // namespace KestrioKit
