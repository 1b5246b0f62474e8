#include "KestrioKit/Core/Platform/Logging.h"

#include "KestrioKit/Core/Platform/Threads/Atomic.h"

#include <QRegularExpression>

#include <array>
#include <cstdio>
#include <memory>
#include <mutex>
#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<QLatin1StringView, 5> levelNames{"FINE"_L1, "INFO"_L1, "DEBUG"_L1, "ERROR"_L1,
                                                      "NONE"_L1};

constexpr auto maskedToken = R"("token":"***")"_L1;

QString printedDate(const QDateTime &date) {
    return date.toUTC().toString(u"yyyy-MM-dd HH:mm:ss"_s) + u" +0000"_s;
}

/// Returns whether a terminal, a file's reader or a JSON parser could take the character for a line
/// end or a control sequence.
bool isControl(QChar character) {
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

QString escaped(QChar character) {
    switch (character.unicode()) {
    case '\n':
        return u"\\n"_s;
    case '\r':
        return u"\\r"_s;
    case '\t':
        return u"\\t"_s;
    default:
        return u"\\u%1"_s.arg(int(character.unicode()), 4, 16, QLatin1Char('0'));
    }
}

/// Returns `text` with all line ends escaped, so that the author of a text cannot forge a log line.
QString singleLine(const QString &text) {
    QString line;
    line.reserve(text.size());
    for (const QChar character : text) {
        if (isControl(character))
            line += escaped(character);
        else
            line += character;
    }
    return line;
}

void write(const QString &text) {
    static std::mutex lock;
    const QByteArray utf8 = text.toUtf8();
    const std::lock_guard guard(lock);
    std::fwrite(utf8.constData(), 1, std::size_t(utf8.size()), stdout);
    std::fflush(stdout);
}

// Never destroyed, because lines are logged while the process ends.
Atomic<std::shared_ptr<const LogHandler>> &logHandler() {
    static auto *const handler = new Atomic<std::shared_ptr<const LogHandler>>;
    return *handler;
}

/// Passes the lines of `text`, each of which ends with a line feed, to the handler. Returns false
/// if no handler can receive them.
bool handOver(LogLevel level, const QString &text) {
    // Without this flag, a handler that logs through the library would call itself forever.
    thread_local bool isHandling = false;
    const std::shared_ptr<const LogHandler> handler = logHandler().value();
    if (!handler || isHandling)
        return false;
    isHandling = true;
    for (const QString &line : text.chopped(1).split(u'\n'))
        (*handler)(level, line);
    isHandling = false;
    return true;
}

void writeLog(LogLevel level, const QString &text) {
    if (!handOver(level, text))
        write(text);
}

} // namespace

QLatin1StringView rawValue(LogLevel level) {
    return levelNames.at(std::size_t(level));
}

std::optional<LogLevel> logLevel(const QString &rawValue) {
    for (std::size_t position = 0; position < levelNames.size(); ++position) {
        if (rawValue == levelNames[position])
            return LogLevel(position);
    }
    return std::nullopt;
}

LogLevel currentLogLevel() {
    static const LogLevel level =
        logLevel(qEnvironmentVariable("KESTRIO_LOG_LEVEL")).value_or(LogLevel::none);
    return level;
}

bool passes(LogLevel level, LogLevel current) {
    return level != LogLevel::none && level >= current;
}

void printLine(const QString &line) {
    write(singleLine(line) + u'\n');
}

void setLogHandler(LogHandler handler) {
    logHandler().setValue(handler ? std::make_shared<const LogHandler>(std::move(handler))
                                  : nullptr);
}

void logLine(LogLevel level, const QString &line) {
    writeLog(level, singleLine(line) + u'\n');
}

QString printedForm(const QString &text) {
    QString quoted = text;
    quoted.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
    return u'"' + singleLine(quoted) + u'"';
}

QString printedForm(const char *text) {
    return printedForm(QString::fromUtf8(text));
}

QString printedForm(const QByteArray &body) {
    // The quantifiers are possessive, so that a long token does not exceed the match limits. The
    // end of the token may be missing.
    static const auto *const token =
        new QRegularExpression(uR"("token"\s*:\s*"(?:[^"\\]++|\\.)*+"?)"_s,
                               QRegularExpression::DotMatchesEverythingOption);
    return printedForm(QString::fromUtf8(body).replace(*token, maskedToken));
}

QString printedForm(qint64 number) {
    return QString::number(number);
}

QString printedList(const QStringList &printedForms) {
    return u'[' + printedForms.join(u", "_s) + u']';
}

LogTrace::LogTrace(LogLevel level, QStringList messages)
    : m_level(level), m_start(QDateTime::currentDateTimeUtc()) {
    if (!messages.isEmpty())
        add(std::move(messages));
}

LogTrace::~LogTrace() {
    if (m_finished)
        return;
    logLine(m_level, u"Unfinished Trace:"_s);
    print();
}

void LogTrace::log(std::optional<LogLevel> level, const std::function<QStringList()> &messages) {
    if (passes(level.value_or(m_level), currentLogLevel()))
        add(messages());
}

void LogTrace::finish(QStringList messages) {
    add(std::move(messages));
    m_finished = true;
    print();
}

void LogTrace::add(QStringList messages) {
    m_entries.append({QDateTime::currentDateTimeUtc(), std::move(messages)});
}

void LogTrace::print() const {
    if (!passes(m_level, currentLogLevel()))
        return;
    const double elapsed = double(m_start.msecsTo(QDateTime::currentDateTimeUtc())) / 1000;
    QString text = u"%1 TRACE %2 elapsed: %3\n"_s.arg(printedDate(m_start), rawValue(m_level),
                                                      QString::number(elapsed));
    for (const Entry &entry : m_entries)
        text += printedDate(entry.date) + u'\t' + singleLine(printedList(entry.messages)) + u'\n';
    writeLog(m_level, text);
}

} // namespace KestrioKit
