#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

/// The visitor, as the service returns it. A response without "vid" is refused; the other fields
/// are absent if they are missing or malformed.
///
///     {"vid":1,"token":"22C51FA0-2C5F-4383-8F83-3E82F7502192","userId":"user-7"}
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
