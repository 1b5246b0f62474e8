#include "host/ScriptRunner.h"

#include "host/CommandTable.h"
#include "host/Report.h"
#include "host/WordSplitter.h"

#include <QCoreApplication>
#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace {

QStringList takeArguments(const Command &command, WordSplitter &words) {
    if (command.arity.restOfLine) {
        const QString rest = words.rest();
        return rest.isEmpty() ? QStringList() : QStringList(rest);
    }
    QStringList arguments;
    while (const std::optional<QString> word = words.next())
        arguments.append(*word);
    return arguments;
}

} // namespace

ScriptRunner::ScriptRunner(std::unique_ptr<LineSource> lines) : m_lines(std::move(lines)) {
    m_lines->setArrivalHandler([this] { advance(); });
}

void ScriptRunner::advance() {
    while (!m_isBusy) {
        const std::optional<QByteArray> line = m_lines->takeLine();
        if (!line)
            break;
        ++m_lineNumber;
        // A command may let events be handled, the arrival of more lines among them.
        m_isBusy = true;
        const Outcome outcome = runLine(*line);
        if (outcome.kind == Outcome::Kind::failed)
            fail(outcome.error);
        else
            m_isBusy = outcome.kind == Outcome::Kind::later;
    }
    if (!m_isBusy && m_lines->atEnd())
        QCoreApplication::exit();
}

Outcome ScriptRunner::runLine(const QByteArray &line) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(line);
    if (decoder.hasError())
        return Outcome::failed(u"the line is not UTF-8"_s);
    WordSplitter words(text);
    const std::optional<QString> name = words.next();
    if (!words.error().isEmpty())
        return Outcome::failed(words.error());
    if (!name)
        return Outcome::done();
    const Command *const command = findCommand(*name);
    if (!command)
        return Outcome::failed(u"unknown command \"%1\""_s.arg(*name));
    const QStringList arguments = takeArguments(*command, words);
    if (!words.error().isEmpty())
        return Outcome::failed(words.error());
    return runCommand(*command, arguments);
}

Outcome ScriptRunner::runCommand(const Command &command, const QStringList &arguments) {
    const qsizetype count = arguments.size();
    if (count < command.arity.least || count > command.arity.most)
        return Outcome::failed(u"usage: %1 %2"_s.arg(command.name, command.usage).trimmed());
    return command.run({arguments, m_state, [this](const std::optional<QString> &error) {
                            completed(error);
                        }});
}

void ScriptRunner::completed(const std::optional<QString> &error) {
    m_isBusy = false;
    if (error)
        fail(*error);
    advance();
}

void ScriptRunner::fail(const QString &error) {
    Report().text("error", error).number("line", m_lineNumber).print();
    m_isBusy = true;
    QCoreApplication::exit(1);
}
