#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

namespace KestrioKit {

/// What kind of answer a question asks for.
struct QuestionType {
    enum class Kind { other, open, likert, multipleChoice, multiSelect, nps };
    using enum Kind;

    Kind kind = other;
    /// With `other`: the type's name as it was received, "invalid" when it was no text. Else empty.
    QString otherText;

    friend bool operator==(const QuestionType &, const QuestionType &) = default;
};

/// Read from the type's name, whole and case-sensitive. Never fails.
template <>
struct JSONCoding<QuestionType> {
    static bool decode(const QJsonValue &value, QuestionType &result, DecodingError &error);
};

} // namespace KestrioKit
