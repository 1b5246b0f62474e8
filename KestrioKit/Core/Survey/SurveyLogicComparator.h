#pragma once

#include "KestrioKit/Core/Survey/CodableDynamicType.h"

#include <QString>

namespace KestrioKit {

/// How a routing rule compares the answer with its own value.
struct SurveyLogicComparator {
    enum class Kind { other, eq, neq, gt, gte, lt, lte, answered };
    using enum Kind;

    Kind kind = other;
    /// With `other`: the name as it was received, "invalid" when it was no text. Else empty.
    QString otherText;

    /// Whether the rule applies to `response`. Texts are equal when they are canonically equivalent
    /// (Unicode Standard Annex 15), within maps too; only integers have an order.
    bool compare(const CodableDynamicType &response, const CodableDynamicType &value) const;

    friend bool operator==(const SurveyLogicComparator &, const SurveyLogicComparator &) = default;
};

/// Read from the comparator's name, whole and case-sensitive. Never fails.
template <>
struct JSONCoding<SurveyLogicComparator> {
    static bool decode(const QJsonValue &value, SurveyLogicComparator &result,
                       DecodingError &error);
};

} // namespace KestrioKit
