#pragma once

#include <QString>

namespace KestrioKit {

/// An error. Errors are passed to completions as values and are never thrown.
struct Error {
    /// The domain that defines the code: one of the `…ErrorDomain` constants.
    QString domain;
    /// The error within the domain.
    int code = 0;
    /// The reason in English, for the developers of the host application.
    QString localizedDescription;

    friend bool operator==(const Error &, const Error &) = default;
};

/// The request received no complete response. The code is a `QNetworkReply::NetworkError`.
inline constexpr QLatin1StringView transportErrorDomain("KestrioKit.TransportError");
/// A response does not have the expected form. The code is a `DecodingError::Reason`.
inline constexpr QLatin1StringView decodingErrorDomain("KestrioKit.DecodingError");

} // namespace KestrioKit
