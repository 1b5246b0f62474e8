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

/// How much a diagnostic line matters, from least to most; the order is what filtering goes by.
enum class LogLevel { fine, info, debug, error, none };

/// The name by which the environment variable knows the level: "FINE", "INFO", …
QLatin1StringView rawValue(LogLevel level);
/// The level of exactly that name, if there is one.
std::optional<LogLevel> logLevel(const QString &rawValue);
/// What "KESTRIO_LOG_LEVEL" says, read once; `none` when it is missing or names no level.
LogLevel currentLogLevel();
/// Whether a message of `level` is printed when `current` is asked for. `none` never is.
bool passes(LogLevel level, LogLevel current);

/// Writes one line to standard output as a whole. Thread-safe. It stays one line whatever is in it:
/// control characters and Unicode's line separators are escaped, as "\n" or "\u2028".
void printLine(const QString &line);

/// Takes a log line, without its end, and how much it matters.
using LogHandler = std::function<void(LogLevel level, const QString &line)>;
/// Has log lines handed to `handler` from now on, or printed again when it is empty. Thread-safe.
/// The handler is called on the thread that logs; the one before may still be running on another
/// thread when this returns.
void setLogHandler(LogHandler handler);
/// Logs one line, escaped as `printLine()` does: hands it to the log handler, or prints it. A line
/// that the handler causes itself is printed. Thread-safe.
void logLine(LogLevel level, const QString &line);

/// The printed form of an item of a log line: texts in double quotes, the rest as it is. Types of
/// other layers add their own overloads beside their declarations.
QString printedForm(const QString &text);
QString printedForm(const char *text);
/// Of the body of a request or an answer, in UTF-8: a visitor's token in it is masked.
QString printedForm(const QByteArray &body);
QString printedForm(qint64 number);
template <typename Value>
QString printedForm(const std::optional<Value> &value) {
    return value ? printedForm(*value) : QStringLiteral("nil");
}

/// Several items as one log line shows them: ["first", 2].
QString printedList(const QStringList &printedForms);

/// Prints one line with all items, when `level` passes the level asked for. Thread-safe.
template <typename... Items>
void KSLog(LogLevel level, const Items &...items) {
    if (passes(level, currentLogLevel()))
        logLine(level, printedList({printedForm(items)...}));
}

/// Lines about one undertaking, printed together when it has finished. For one user at a time.
class LogTrace {
public:
    struct Entry {
        QDateTime date;
        /// The printed forms of what was logged.
        QStringList messages;
    };

    /// Starts now. `messages`, unless empty, become the first entry.
    explicit LogTrace(LogLevel level, QStringList messages = {});
    /// Prints "Unfinished Trace:" and what there is, unless `finish()` was called.
    ~LogTrace();
    Q_DISABLE_COPY_MOVE(LogTrace)

    /// Adds an entry. `messages` is only called when the entry's level (by default the trace's)
    /// passes the level asked for.
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
