#pragma once

#include "KestrioKit/Core/Platform/Error.h"

#include <QString>

namespace KestrioKit {

/// Why the library sends nothing; every send completes with it meanwhile.
struct DisabledError {
    enum class Kind {
        /// The service gave a reason of its own, `otherText`.
        other,
        /// The service refuses this version of the library.
        version,
        /// The service refuses the environment.
        environment,
        /// The library itself: network access is off, or the configuration could not be fetched.
        local,
    };
    using enum Kind;

    Kind kind = other;
    /// The service's words with `other`; else empty.
    QString otherText;

    /// What is wrong and what to do about it, for the host's developer.
    QString localizedDescription() const;

    /// The same as a general error.
    Error toError() const;

    /// Of the library itself.
    static const DisabledError &locally();

    friend bool operator==(const DisabledError &, const DisabledError &) = default;
};

/// The library is disabled; the code is a `DisabledError::Kind`.
inline constexpr QLatin1StringView disabledErrorDomain("KestrioKit.DisabledError");

/// Whether the error was made by `DisabledError::toError()`.
bool isDisabledError(const Error &error);

/// As it stands in log lines: `local`, or `other("Payment overdue")`.
QString printedForm(const DisabledError &error);

} // namespace KestrioKit
