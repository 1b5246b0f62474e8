#pragma once

#include <optional>
#include <string_view>

namespace KestrioKit {

/// How a field of a record is decoded.
enum class Presence {
    /// The key must exist with a value of the right type.
    required,
    /// The key may be missing or null. A value of another type is an error.
    optional,
    /// The field is absent if the key is missing, or if its value is null or has another type or
    /// structure.
    lenient,
};

/// A row of a key table: a JSON key and the field of `Record` that holds its value.
template <typename Record, typename Field, Presence presence>
struct KeyTableRow {
    static constexpr Presence fieldPresence = presence;
    std::string_view key;
    Field Record::*field;
};

template <typename Record, typename Field>
constexpr auto required(std::string_view key, Field Record::*field) {
    return KeyTableRow<Record, Field, Presence::required>{key, field};
}

template <typename Record, typename Field>
constexpr auto optional(std::string_view key, std::optional<Field> Record::*field) {
    return KeyTableRow<Record, std::optional<Field>, Presence::optional>{key, field};
}

template <typename Record, typename Field>
constexpr auto lenient(std::string_view key, std::optional<Field> Record::*field) {
    return KeyTableRow<Record, std::optional<Field>, Presence::lenient>{key, field};
}

/// The rows of a record in the order in which its keys are written, as a `std::tuple` of
/// `required()`, `optional()` and `lenient()`. Each record specializes this next to its
/// declaration:
///
///     template <>
///     inline constexpr auto keyTable<Labels> =
///         std::tuple(required("left", &Labels::left), required("right", &Labels::right));
template <typename Record>
inline constexpr auto keyTable = nullptr;

} // namespace KestrioKit
