#pragma once

#include "KestrioKit/Core/Platform/DeviceFacts.h"

#include <QString>

namespace KestrioKit {

/// What the library says of itself, the host application and the device with every request.
struct UserAgent {
    QString sdkVersion;
    QString osVersion;
    QString appVersion;
    /// The machine's hardware name.
    QString deviceType;

    /// The versions as they are now. With "KESTRIO_KILLSWITCH" in the environment, whatever its
    /// value, the library gives itself out as "0.0.1", a version that the service can refuse.
    /// The host's version is "Unknown" unless `QCoreApplication::applicationVersion()` is set.
    static UserAgent current(const DeviceFacts &device);

    /// "Kestrio/iOS;Version=…;OSVersion=…;AppVersion=…"
    QString uaHeaderValue() const;

    friend bool operator==(const UserAgent &, const UserAgent &) = default;
};

} // namespace KestrioKit
