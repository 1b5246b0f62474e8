#pragma once

#include <QString>

namespace KestrioKit {

/// What a line of the facade's is about.
enum class LogCategory { debug, info, error };

/// Prints "Kestrio - [Category]: message" as one line on standard output, whatever the log level.
void logLine(const QString &message, LogCategory category);

} // namespace KestrioKit
