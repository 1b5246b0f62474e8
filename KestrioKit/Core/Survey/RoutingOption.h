#pragma once

#include "KestrioKit/Core/Survey/SurveyLogicComparator.h"

namespace KestrioKit {

/// A rule that says where the survey goes on after an answer.
struct RoutingOption {
    SurveyLogicComparator comparator;
    /// What the answer is compared with.
    CodableDynamicType value;
    /// The index of the next question when the rule applies; outside of the list ends the survey.
    qint64 target = 0;

    friend bool operator==(const RoutingOption &, const RoutingOption &) = default;
};

template <>
inline constexpr auto
    keyTable<RoutingOption> = std::tuple(required("comparator", &RoutingOption::comparator),
                                         required("value", &RoutingOption::value),
                                         required("target", &RoutingOption::target));

} // namespace KestrioKit
