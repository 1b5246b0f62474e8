#pragma once

#include "KestrioKit/Core/Survey/SurveyLogicComparator.h"

namespace KestrioKit {

/// A rule that selects the next question after an answer.
struct RoutingOption {
    /// How the answer is compared with `value`.
    SurveyLogicComparator comparator;
    /// The value to compare the answer with.
    CodableDynamicType value;
    /// The index of the next question if the rule applies. An index outside the list ends the
    /// survey.
    qint64 target = 0;

    friend bool operator==(const RoutingOption &, const RoutingOption &) = default;
};

template <>
inline constexpr auto
    keyTable<RoutingOption> = std::tuple(required("comparator", &RoutingOption::comparator),
                                         required("value", &RoutingOption::value),
                                         required("target", &RoutingOption::target));

} // namespace KestrioKit
