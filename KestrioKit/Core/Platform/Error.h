#pragma once

#include <QString>

namespace KestrioKit {

/// What went wrong, as a value: it travels through completions and is never thrown.
struct Error {
    /// Who the code belongs to: one of the `…ErrorDomain` constants.
    QString domain;
    /// Which error of the domain it is.
    int code = 0;
    /// The reason, in English, for the people who build the host application.
    QString localizedDescription;

    friend bool operator==(const Error &, const Error &) = default;
};

/// The request got no whole answer; the code is a `QNetworkReply::NetworkError`.
inline constexpr QLatin1StringView transportErrorDomain("KestrioKit.TransportError");
/// An answer that is not what the service promises; the code is a `DecodingError::Reason`.
inline constexpr QLatin1StringView decodingErrorDomain("KestrioKit.DecodingError");

} // namespace KestrioKit
