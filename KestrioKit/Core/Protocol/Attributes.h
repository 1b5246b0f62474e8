#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QList>
#include <QMap>
#include <QString>

namespace KestrioKit {

namespace Request {

/// Sets one attribute of the visitor. Sent as PUT to "/1/visitors/VID/attributes/KEY" with a body
/// such as {"value":"pro"}.
struct UpdateAttribute {
    /// The request's body. The key is not part of it: it is sent in the URL.
    struct RequestBody {
        QString value;

        friend bool operator==(const RequestBody &, const RequestBody &) = default;
    };

    QString key;
    QString value;

    friend bool operator==(const UpdateAttribute &, const UpdateAttribute &) = default;
};

/// Sets several attributes of the visitor in one request. Sent as PUT to
/// "/2/environments/ENV/visitors/VID/attributes". The body is this map alone, such as
/// {"plan":"pro","seats":"5"}.
struct UpdateAttributes {
    QMap<QString, QString> attributes;

    friend bool operator==(const UpdateAttributes &, const UpdateAttributes &) = default;
};

/// Removes the attributes of the visitor that have the given keys. Sent as DELETE to
/// "/2/environments/ENV/visitors/VID/attributes" with a body such as {"delete":["plan"]}.
struct RemoveAttributes {
    QList<QString> attributes;

    friend bool operator==(const RemoveAttributes &, const RemoveAttributes &) = default;
};

} // namespace Request

/// The keys of the request's body.
template <>
inline constexpr auto keyTable<Request::UpdateAttribute::RequestBody> =
    std::tuple(required("value", &Request::UpdateAttribute::RequestBody::value));

/// The keys in the state file. The request's body has the value only.
template <>
inline constexpr auto keyTable<Request::UpdateAttribute> =
    std::tuple(required("key", &Request::UpdateAttribute::key),
               required("value", &Request::UpdateAttribute::value));

/// The keys in the state file. The request's body is the map alone.
template <>
inline constexpr auto keyTable<Request::UpdateAttributes> =
    std::tuple(required("attributes", &Request::UpdateAttributes::attributes));

/// The keys in the state file and in the request's body.
template <>
inline constexpr auto keyTable<Request::RemoveAttributes> =
    std::tuple(required("delete", &Request::RemoveAttributes::attributes));

} // namespace KestrioKit
