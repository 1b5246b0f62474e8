#pragma once

#include <optional>
#include <string_view>

namespace KestrioKit {

/// How a record's field is read.
enum class Presence {
    /// The key must be there with a value of the right type.
    required,
    /// The key may be missing or null; another type is an error.
    optional,
    /// Missing, null or of another type or shape: absent (`decodeSafely`).
    lenient,
};

/// One line of a key table: a JSON key and the field of `Record` that it carries.
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

/// The rows of a record, in the order in which its keys are written: a `std::tuple` of
/// `required()`, `optional()` and `lenient()`. Each record specialises it beside its declaration:
///
///     template <>
///     inline constexpr auto keyTable<Labels> =
///         std::tuple(required("left", &Labels::left), required("right", &Labels::right));
template <typename Record>
inline constexpr auto keyTable = nullptr;

} // namespace KestrioKit
