#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <optional>

namespace KestrioKit {

/// The visitor's identity as stored in the identity file.
struct LocalData {
    /// The bearer token that the service issued for the visitor.
    std::optional<QString> token;
    /// The number by which the service knows the visitor.
    std::optional<qint64> visitorIdentifier;
    /// The host's identifier of the user, once the user is attached to the visitor.
    std::optional<QString> userIdentifier;

    friend bool operator==(const LocalData &, const LocalData &) = default;
};

template <>
inline constexpr auto
    keyTable<LocalData> = std::tuple(optional("token", &LocalData::token),
                                     optional("visitorIdentifier", &LocalData::visitorIdentifier),
                                     optional("userIdentifier", &LocalData::userIdentifier));

} // namespace KestrioKit
