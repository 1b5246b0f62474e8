#pragma once

#include "KestrioKit/Core/Protocol/Metadata.h"

namespace KestrioKit {

namespace Request {

/// What went wrong.
struct RecordErrorDetails {
    QString message;
    /// The call stack, when the caller has one.
    std::optional<QString> stack;

    friend bool operator==(const RecordErrorDetails &, const RecordErrorDetails &) = default;
};

/// Tells the service of an error within the library.
struct RecordError {
    QString environmentId;
    std::optional<qint64> visitorId;
    /// `UserAgent::uaHeaderValue()`.
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
