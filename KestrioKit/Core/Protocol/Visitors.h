#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

namespace Request {

/// Requests a visitor: the visitor of the given user, or an anonymous visitor. Sent as POST to
/// "/1/environments/ENV/visitors". The response is a `ResponseVisitors`.
struct Visitors {
    /// The host's id of the user; absent for an anonymous visitor.
    std::optional<QString> userIdentifier;

    friend bool operator==(const Visitors &, const Visitors &) = default;
};

/// Tells the service which user the current visitor is. Sent as PUT to
/// "/1/environments/ENV/visitors/VID". The response is a `ResponseVisitors`, which may name another
/// visitor.
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
