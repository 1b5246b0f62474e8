#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

namespace KestrioKit {

/// The kind of answer that a question asks for.
struct QuestionType {
    /// `other` stands for every type that this version of the library does not know.
    enum class Kind { other, open, likert, multipleChoice, multiSelect, nps };
    using enum Kind;

    Kind kind = other;
    /// For `other`: the received type name, or "invalid" if it was not a string. Otherwise empty.
    QString otherText;

    friend bool operator==(const QuestionType &, const QuestionType &) = default;
};

/// Decodes the type from its name. The whole name is compared, case-sensitively. Never fails: an
/// unknown name is read as `other`.
template <>
struct JSONCoding<QuestionType> {
    static bool decode(const QJsonValue &value, QuestionType &result, DecodingError &error);
};

} // namespace KestrioKit
