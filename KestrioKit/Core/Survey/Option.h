#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

/// One of the answers that a question offers.
struct Option {
    std::optional<qint64> id;
    /// The caption shown.
    QString label;
    /// What is submitted when the option is chosen.
    QString value;

    friend bool operator==(const Option &, const Option &) = default;
};

template <>
inline constexpr auto keyTable<Option> = std::tuple(lenient("id", &Option::id),
                                                    required("label", &Option::label),
                                                    required("value", &Option::value));

} // namespace KestrioKit
