#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace KestrioKit {

/// What the library tells the service about the device.
struct DeviceFacts {
    /// The primary screen in device-independent pixels; absent for a program without screens.
    std::optional<QSize> screenSize;
    /// The language of `QLocale()`, as ISO 639 has it: "en".
    QString languageCode;
    /// The version of the operating system, "Unknown" where Qt does not know it.
    QString osVersion;
    /// The machine's hardware name: "x86_64".
    QString machine;

    /// The facts as they are now. Thread-safe; needs no application object.
    static DeviceFacts current();

    friend bool operator==(const DeviceFacts &, const DeviceFacts &) = default;
};

/// The user's languages, best first, as BCP 47 has them: "en-GB", "fr". Thread-safe. Asking costs
/// some microseconds, so that it is none of the facts that go with every event.
QStringList preferredLanguages();

} // namespace KestrioKit
