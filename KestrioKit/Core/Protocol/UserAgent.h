#pragma once

#include "KestrioKit/Core/Platform/DeviceFacts.h"

#include <QString>

namespace KestrioKit {

/// The versions of the library, the host application and the device. They are sent with every
/// request.
struct UserAgent {
    QString sdkVersion;
    QString osVersion;
    QString appVersion;
    /// The hardware name of the machine.
    QString deviceType;

    /// Returns the current versions. If the environment variable "KESTRIO_KILLSWITCH" is set to any
    /// value, the library reports its version as "0.0.1", which the service can refuse. The host's
    /// version is `QCoreApplication::applicationVersion()`, or "Unknown" if that is empty.
    static UserAgent current(const DeviceFacts &device);

    /// Returns the value of the "User-Agent" header:
    /// "Kestrio/iOS;Version=…;OSVersion=…;AppVersion=…".
    QString uaHeaderValue() const;

    friend bool operator==(const UserAgent &, const UserAgent &) = default;
};

} // namespace KestrioKit
