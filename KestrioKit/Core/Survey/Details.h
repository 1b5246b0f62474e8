#pragma once

#include "KestrioKit/Core/Survey/Labels.h"
#include "KestrioKit/Core/Survey/Option.h"
#include "KestrioKit/Core/Survey/RoutingOption.h"

#include <QList>

#include <optional>

namespace KestrioKit {

/// What a question says and offers.
struct Details {
    /// The question itself.
    QString text;
    /// A line shown above the question.
    std::optional<QString> introductionText;
    /// The ends of a Likert or net-promoter scale.
    std::optional<Labels> labels;
    std::optional<QList<Option>> options;
    /// Tried in order once the question is answered.
    std::optional<QList<RoutingOption>> routingOptions;

    friend bool operator==(const Details &, const Details &) = default;
};

template <>
inline constexpr auto keyTable<Details> = std::tuple(
    required("message", &Details::text), lenient("introText", &Details::introductionText),
    lenient("labels", &Details::labels), lenient("options", &Details::options),
    lenient("routingOptions", &Details::routingOptions));

} // namespace KestrioKit
