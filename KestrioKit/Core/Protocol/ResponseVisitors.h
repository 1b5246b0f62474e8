#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

/// The visitor, as the service returns it.
struct ResponseVisitors {
    /// The service's id of the visitor.
    qint64 visitorIdentifier = 0;
    /// The visitor's bearer token, which authorizes later requests.
    std::optional<QString> token;
    /// The host's id of the user; absent for an anonymous visitor.
    std::optional<QString> userIdentifier;

    friend bool operator==(const ResponseVisitors &, const ResponseVisitors &) = default;
};

template <>
inline constexpr auto
    keyTable<ResponseVisitors> = std::tuple(required("vid", &ResponseVisitors::visitorIdentifier),
                                            lenient("token", &ResponseVisitors::token),
                                            lenient("userId", &ResponseVisitors::userIdentifier));

} // namespace KestrioKit
