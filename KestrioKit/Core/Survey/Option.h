#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

/// An answer that a question offers.
struct Option {
    /// The key of the option in an answer.
    std::optional<qint64> id;
    /// The caption that is shown.
    QString label;
    /// The value that is submitted if the option is chosen.
    QString value;

    friend bool operator==(const Option &, const Option &) = default;
};

template <>
inline constexpr auto keyTable<Option> = std::tuple(lenient("id", &Option::id),
                                                    required("label", &Option::label),
                                                    required("value", &Option::value));

} // namespace KestrioKit
