#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <type_traits>

namespace KestrioKit {

/// The importance of a diagnostic line, in ascending order. Lines are filtered by this order.
enum class LogLevel { fine, info, debug, error, none };

/// Returns the level's name in "KESTRIO_LOG_LEVEL": "FINE", "INFO", …
QLatin1StringView rawValue(LogLevel level);
/// Returns the level with exactly that name, or nothing if there is none.
std::optional<LogLevel> logLevel(const QString &rawValue);
/// Returns the level that "KESTRIO_LOG_LEVEL" names, or `none` if it is unset or names no level.
/// The variable is read once. Thread-safe.
LogLevel currentLogLevel();
/// Returns whether a message of `level` is logged while the current level is `current`. A message
/// of level `none` never is.
bool passes(LogLevel level, LogLevel current);

/// Writes one line to standard output in one piece. Control characters and Unicode's line
/// separators are escaped, as "\n" or "\u2028", so the result is always one line. Thread-safe.
void printLine(const QString &line);

/// Receives a log line, without a line terminator, and its level. Must not throw.
using LogHandler = std::function<void(LogLevel level, const QString &line)>;
/// Passes log lines to `handler` from now on, or prints them again if it is empty. The handler is
/// called on the thread that logs. The previous handler may still be running on another thread when
/// this function returns. Thread-safe.
void setLogHandler(LogHandler handler);
/// Passes one line, escaped as by `printLine()`, to the log handler, or prints it if there is none.
/// A line that the handler itself causes is printed. Thread-safe.
void logLine(LogLevel level, const QString &line);

/// Returns an item as log lines show it: texts in double quotes, other items as they are. Types of
/// other layers declare their own overloads beside them.
QString printedForm(const QString &text);
QString printedForm(const char *text);
/// Returns the body of a request or response, in UTF-8, as a quoted text. A visitor's token is
/// masked.
QString printedForm(const QByteArray &body);
QString printedForm(qint64 number);
/// Returns the printed form of the value, or "nil" if there is none.
template <typename Value>
QString printedForm(const std::optional<Value> &value) {
    return value ? printedForm(*value) : QStringLiteral("nil");
}

/// Returns several items as one log line shows them: ["first", 2].
QString printedList(const QStringList &printedForms);

/// Logs one line with all items if `level` passes the current level. Thread-safe.
template <typename... Items>
void KSLog(LogLevel level, const Items &...items) {
    if (passes(level, currentLogLevel()))
        logLine(level, printedList({printedForm(items)...}));
}

/// Collects the log lines about one operation and prints them together when it has finished. Not
/// thread-safe.
class LogTrace {
public:
    struct Entry {
        QDateTime date;
        /// The printed forms of the logged items.
        QStringList messages;
    };

    /// Starts the trace now. `messages`, unless empty, become the first entry.
    explicit LogTrace(LogLevel level, QStringList messages = {});
    /// If `finish()` was not called, prints "Unfinished Trace:" and the entries so far.
    ~LogTrace();
    Q_DISABLE_COPY_MOVE(LogTrace)

    /// Adds an entry. Calls `messages` only if the entry's level passes the current level. The
    /// default for `level` is the trace's level.
    void log(std::optional<LogLevel> level, const std::function<QStringList()> &messages);
    /// Adds a last entry and prints the trace.
    void finish(QStringList messages);

private:
    void add(QStringList messages);
    void print() const;

    LogLevel m_level;
    QDateTime m_start;
    QList<Entry> m_entries;
    bool m_finished = false;
};

} // namespace KestrioKit
