#pragma once

#include "KestrioKit/Core/Platform/DeviceFacts.h"
#include "KestrioKit/Core/Survey/CodableDynamicType.h"

#include <optional>

namespace KestrioKit {

namespace Request {

/// The context in which something happened: screen, page, language and the caller's own entries. A
/// complete example with the entry "plan" in `extra`:
///
///     {"sw":1280,"sh":800,"pg":"Cart","l":"en","plan":"pro"}
struct Metadata {
    using Extra = QMap<QString, CodableDynamicType>;

    /// The screen's size in device-independent pixels; absent if there is no screen.
    std::optional<qint64> screenWidth;
    std::optional<qint64> screenHeight;
    /// The page's name, as the host calls it.
    std::optional<QString> pagename;
    /// The language code, or the locale that the caller passed to `makeMetadata()`.
    std::optional<QString> language;
    /// The caller's own entries. They are written into the same JSON object as the fields above. An
    /// entry whose key equals that of a field replaces the field.
    std::optional<Extra> extra;

    friend bool operator==(const Metadata &, const Metadata &) = default;
};

/// Returns the context on the given device. The language is `locale`, or the device's language if
/// `locale` is absent.
Metadata makeMetadata(const DeviceFacts &device, std::optional<QString> pagename = {},
                      std::optional<QString> locale = {},
                      std::optional<Metadata::Extra> extra = {});

} // namespace Request

template <>
inline constexpr auto keyTable<Request::Metadata> = std::tuple(
    lenient("sw", &Request::Metadata::screenWidth), lenient("sh", &Request::Metadata::screenHeight),
    lenient("pg", &Request::Metadata::pagename), lenient("l", &Request::Metadata::language));

/// Encodes the entries of `extra` as keys of the same object. When decoding, every key that is not
/// a field's becomes an entry of `extra`, also a field's key whose value has the wrong type. Values
/// that `CodableDynamicType` cannot hold are ignored.
template <>
struct JSONCoding<Request::Metadata> {
    static void encode(JSONWriter &writer, const Request::Metadata &metadata);
    static bool decode(const QJsonValue &value, Request::Metadata &result, DecodingError &error);
};

} // namespace KestrioKit
