#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace KestrioKit {

/// The information about the device that the library sends to the service.
struct DeviceFacts {
    /// The size of the primary screen in device-independent pixels. Absent if the program has no
    /// screens.
    std::optional<QSize> screenSize;
    /// The language of `QLocale()` as an ISO 639 code: "en".
    QString languageCode;
    /// The version of the operating system, or "Unknown" if Qt cannot determine it.
    QString osVersion;
    /// The hardware name of the machine: "x86_64".
    QString machine;

    /// Returns the current facts. Thread-safe. Needs no application object.
    static DeviceFacts current();

    friend bool operator==(const DeviceFacts &, const DeviceFacts &) = default;
};

/// Returns the user's languages as BCP 47 tags, most preferred first: "en-GB", "fr". Thread-safe. A
/// call takes some microseconds, so the languages are not part of the facts that are sent with
/// every event.
QStringList preferredLanguages();

} // namespace KestrioKit
