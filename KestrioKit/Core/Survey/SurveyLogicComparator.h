#pragma once

#include "KestrioKit/Core/Survey/CodableDynamicType.h"

#include <QString>

namespace KestrioKit {

/// Specifies how a routing rule compares the answer with the rule's value.
struct SurveyLogicComparator {
    /// `answered` applies to every answer. `other` stands for an unknown comparator and never
    /// applies.
    enum class Kind { other, eq, neq, gt, gte, lt, lte, answered };
    using enum Kind;

    Kind kind = other;
    /// For `other`: the received name, or "invalid" if it was not a string. Otherwise empty.
    QString otherText;

    /// Returns whether the rule applies to `response`. Strings are equal if they are canonically
    /// equivalent (Unicode Standard Annex 15), also within maps. Values of different forms are
    /// never equal. Only integers are ordered: for other forms `gt`, `gte`, `lt` and `lte` are
    /// false.
    bool compare(const CodableDynamicType &response, const CodableDynamicType &value) const;

    friend bool operator==(const SurveyLogicComparator &, const SurveyLogicComparator &) = default;
};

/// Decodes the comparator from its name. The whole name is compared, case-sensitively. Never fails:
/// an unknown name is read as `other`.
template <>
struct JSONCoding<SurveyLogicComparator> {
    static bool decode(const QJsonValue &value, SurveyLogicComparator &result,
                       DecodingError &error);
};

} // namespace KestrioKit
