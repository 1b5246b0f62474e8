#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

namespace Request {

/// Asks for a visitor: of this user, or an anonymous one.
struct Visitors {
    std::optional<QString> userIdentifier;

    friend bool operator==(const Visitors &, const Visitors &) = default;
};

/// Says which user the visitor is.
struct UpdateUserIdentifier {
    QString userIdentifier;

    friend bool operator==(const UpdateUserIdentifier &, const UpdateUserIdentifier &) = default;
};

} // namespace Request

template <>
inline constexpr auto keyTable<Request::Visitors> =
    std::tuple(optional("userId", &Request::Visitors::userIdentifier));

template <>
inline constexpr auto keyTable<Request::UpdateUserIdentifier> =
    std::tuple(required("userId", &Request::UpdateUserIdentifier::userIdentifier));

} // namespace KestrioKit
