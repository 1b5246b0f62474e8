#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QList>
#include <QMap>
#include <QString>

namespace KestrioKit {

namespace Request {

/// Sets one attribute of the visitor.
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

/// Sets several attributes of the visitor in one request, whose body is this map alone.
struct UpdateAttributes {
    QMap<QString, QString> attributes;

    friend bool operator==(const UpdateAttributes &, const UpdateAttributes &) = default;
};

/// Removes the attributes of the visitor that have the given keys.
struct RemoveAttributes {
    QList<QString> attributes;

    friend bool operator==(const RemoveAttributes &, const RemoveAttributes &) = default;
};

} // namespace Request

template <>
inline constexpr auto keyTable<Request::UpdateAttribute::RequestBody> =
    std::tuple(required("value", &Request::UpdateAttribute::RequestBody::value));

template <>
inline constexpr auto keyTable<Request::UpdateAttribute> =
    std::tuple(required("key", &Request::UpdateAttribute::key),
               required("value", &Request::UpdateAttribute::value));

template <>
inline constexpr auto keyTable<Request::UpdateAttributes> =
    std::tuple(required("attributes", &Request::UpdateAttributes::attributes));

template <>
inline constexpr auto keyTable<Request::RemoveAttributes> =
    std::tuple(required("delete", &Request::RemoveAttributes::attributes));

} // namespace KestrioKit
