#pragma once

#include "KestrioKit/Core/Platform/DeviceFacts.h"
#include "KestrioKit/Core/Survey/CodableDynamicType.h"

#include <optional>

namespace KestrioKit {

namespace Request {

/// Where and how something happened.
struct Metadata {
    using Extra = QMap<QString, CodableDynamicType>;

    /// Device-independent pixels.
    std::optional<qint64> screenWidth;
    std::optional<qint64> screenHeight;
    /// The host's name of the page.
    std::optional<QString> pagename;
    std::optional<QString> language;
    /// The caller's own entries, written beside the fields above, or instead of one of like key.
    std::optional<Extra> extra;

    friend bool operator==(const Metadata &, const Metadata &) = default;
};

/// The context on the given device. `locale` is the language, unless it is absent: then it is the
/// device's.
Metadata makeMetadata(const DeviceFacts &device, std::optional<QString> pagename = {},
                      std::optional<QString> locale = {},
                      std::optional<Metadata::Extra> extra = {});

} // namespace Request

template <>
inline constexpr auto keyTable<Request::Metadata> = std::tuple(
    lenient("sw", &Request::Metadata::screenWidth), lenient("sh", &Request::Metadata::screenHeight),
    lenient("pg", &Request::Metadata::pagename), lenient("l", &Request::Metadata::language));

/// The entries of `extra` are keys of the same object. When reading, what is none of the fields
/// becomes such an entry again; values of other forms are passed over.
template <>
struct JSONCoding<Request::Metadata> {
    static void encode(JSONWriter &writer, const Request::Metadata &metadata);
    static bool decode(const QJsonValue &value, Request::Metadata &result, DecodingError &error);
};

} // namespace KestrioKit
