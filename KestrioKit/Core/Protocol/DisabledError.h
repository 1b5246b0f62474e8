#pragma once

#include "KestrioKit/Core/Platform/Error.h"

#include <QString>

namespace KestrioKit {

/// The reason why the library is disabled. While it is disabled, the library sends nothing, and
/// every request fails with this error.
struct DisabledError {
    enum class Kind {
        /// The service disabled the library for a reason of its own, which `otherText` holds.
        other,
        /// The service refuses this version of the library.
        version,
        /// The service refuses the environment.
        environment,
        /// The library disabled itself: network access is off, or the configuration could not be
        /// fetched.
        local,
    };
    using enum Kind;

    Kind kind = other;
    /// The service's reason if `kind` is `other`; otherwise empty.
    QString otherText;

    /// Returns a sentence in English for the host's developer: what is wrong and how to fix it.
    QString localizedDescription() const;

    /// Returns this error as a general error. Its domain is `disabledErrorDomain`, its code is
    /// `kind`.
    Error toError() const;

    /// Returns the error of kind `local`. The reference stays valid for the life of the process.
    static const DisabledError &locally();

    friend bool operator==(const DisabledError &, const DisabledError &) = default;
};

/// The domain of errors made by `DisabledError::toError()`. Their code is a `DisabledError::Kind`.
inline constexpr QLatin1StringView disabledErrorDomain("KestrioKit.DisabledError");

/// Returns whether the error was made by `DisabledError::toError()`.
bool isDisabledError(const Error &error);

/// Returns the error as log lines show it, such as `local` or `other("Payment overdue")`.
QString printedForm(const DisabledError &error);

} // namespace KestrioKit
