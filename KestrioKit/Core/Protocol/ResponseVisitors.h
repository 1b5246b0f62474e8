#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

/// Who the visitor is, as the service answers.
struct ResponseVisitors {
    qint64 visitorIdentifier = 0;
    /// The visitor's bearer token.
    std::optional<QString> token;
    /// The host's user that the visitor is known to be.
    std::optional<QString> userIdentifier;

    friend bool operator==(const ResponseVisitors &, const ResponseVisitors &) = default;
};

template <>
inline constexpr auto
    keyTable<ResponseVisitors> = std::tuple(required("vid", &ResponseVisitors::visitorIdentifier),
                                            lenient("token", &ResponseVisitors::token),
                                            lenient("userId", &ResponseVisitors::userIdentifier));

} // namespace KestrioKit
