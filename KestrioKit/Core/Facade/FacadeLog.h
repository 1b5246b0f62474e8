#pragma once

#include <QString>

namespace KestrioKit {

/// The subject of a log line of the facade.
enum class LogCategory { debug, info, error };

/// Logs the line "Kestrio - [Category]: message", whatever the value of "KESTRIO_LOG_LEVEL".
/// Thread-safe.
void logLine(const QString &message, LogCategory category);

} // namespace KestrioKit
