#include "KestrioKit/Core/Facade/FacadeLog.h"

#include "KestrioKit/Core/Platform/Logging.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

QLatin1StringView capitalisedName(LogCategory category) {
    switch (category) {
    case LogCategory::debug:
        return "Debug"_L1;
    case LogCategory::info:
        return "Info"_L1;
    case LogCategory::error:
        return "Error"_L1;
    }
    Q_UNREACHABLE();
}

LogLevel level(LogCategory category) {
    switch (category) {
    case LogCategory::debug:
        return LogLevel::debug;
    case LogCategory::info:
        return LogLevel::info;
    case LogCategory::error:
        return LogLevel::error;
    }
    Q_UNREACHABLE();
}

} // namespace

void logLine(const QString &message, LogCategory category) {
    logLine(level(category), u"Kestrio - [%1]: %2"_s.arg(capitalisedName(category), message));
}

} // namespace KestrioKit
