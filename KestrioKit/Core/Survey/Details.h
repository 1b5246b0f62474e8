#pragma once

#include "KestrioKit/Core/Survey/Labels.h"
#include "KestrioKit/Core/Survey/Option.h"
#include "KestrioKit/Core/Survey/RoutingOption.h"

#include <QList>

#include <optional>

namespace KestrioKit {

/// The content of a question.
struct Details {
    /// The text of the question.
    QString text;
    /// A line that is shown above the question.
    std::optional<QString> introductionText;
    /// The captions of a Likert or net-promoter scale.
    std::optional<Labels> labels;
    /// The answers to choose from.
    std::optional<QList<Option>> options;
    /// The routing rules. They are tried in order after the question is answered, and the first one
    /// that applies is used.
    std::optional<QList<RoutingOption>> routingOptions;

    friend bool operator==(const Details &, const Details &) = default;
};

template <>
inline constexpr auto keyTable<Details> = std::tuple(
    required("message", &Details::text), lenient("introText", &Details::introductionText),
    lenient("labels", &Details::labels), lenient("options", &Details::options),
    lenient("routingOptions", &Details::routingOptions));

} // namespace KestrioKit
