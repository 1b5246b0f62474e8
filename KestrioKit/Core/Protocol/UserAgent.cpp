#include "KestrioKit/Core/Protocol/UserAgent.h"

#include <QCoreApplication>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

QString sdkVersion() {
    if (qEnvironmentVariableIsSet("KESTRIO_KILLSWITCH"))
        return u"0.0.1"_s;
    return QLatin1StringView(KESTRIO_VERSION);
}

QString appVersion() {
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? u"Unknown"_s : version;
}

} // namespace

UserAgent UserAgent::current(const DeviceFacts &device) {
    return {::KestrioKit::sdkVersion(), device.osVersion, ::KestrioKit::appVersion(),
            device.machine};
}

QString UserAgent::uaHeaderValue() const {
    return u"Kestrio/iOS;Version="_s + sdkVersion + u";OSVersion="_s + osVersion +
           u";AppVersion="_s + appVersion;
}

} // namespace KestrioKit
