#pragma once

#include <QString>

namespace KestrioKit {

/// What a line of the facade's is about.
enum class LogCategory { debug, info, error };

/// Logs the line "Kestrio - [Category]: message", whatever "KESTRIO_LOG_LEVEL" says.
void logLine(const QString &message, LogCategory category);

} // namespace KestrioKit
