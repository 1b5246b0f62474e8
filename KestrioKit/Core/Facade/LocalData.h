#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <optional>

namespace KestrioKit {

/// Who the visitor is, as kept in the identity file.
struct LocalData {
    /// The bearer token that the service issued for the visitor.
    std::optional<QString> token;
    /// The service's number for the visitor.
    std::optional<qint64> visitorIdentifier;
    /// The host's name for the signed-in user, once attached.
    std::optional<QString> userIdentifier;

    friend bool operator==(const LocalData &, const LocalData &) = default;
};

template <>
inline constexpr auto
    keyTable<LocalData> = std::tuple(optional("token", &LocalData::token),
                                     optional("visitorIdentifier", &LocalData::visitorIdentifier),
                                     optional("userIdentifier", &LocalData::userIdentifier));

} // namespace KestrioKit
