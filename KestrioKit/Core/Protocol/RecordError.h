#pragma once

#include "KestrioKit/Core/Protocol/Metadata.h"

namespace KestrioKit {

namespace Request {

/// The description of an error.
struct RecordErrorDetails {
    QString message;
    /// The call stack, if the caller has one.
    std::optional<QString> stack;

    friend bool operator==(const RecordErrorDetails &, const RecordErrorDetails &) = default;
};

/// Reports an error within the library to the service. Sent as POST to "/1/errors".
struct RecordError {
    QString environmentId;
    /// The visitor at the time of the error; absent if there was none.
    std::optional<qint64> visitorId;
    /// The library, host application and device, as in `UserAgent::uaHeaderValue()`.
    QString userAgent;
    Metadata metadata;
    RecordErrorDetails details;

    friend bool operator==(const RecordError &, const RecordError &) = default;
};

} // namespace Request

template <>
inline constexpr auto keyTable<Request::RecordErrorDetails> =
    std::tuple(required("message", &Request::RecordErrorDetails::message),
               optional("stack", &Request::RecordErrorDetails::stack));

template <>
inline constexpr auto keyTable<Request::RecordError> =
    std::tuple(required("envId", &Request::RecordError::environmentId),
               optional("vid", &Request::RecordError::visitorId),
               required("userAgent", &Request::RecordError::userAgent),
               required("meta", &Request::RecordError::metadata),
               required("err", &Request::RecordError::details));

} // namespace KestrioKit
