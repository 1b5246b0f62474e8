#include "host/ScriptRunner.h"

#include "host/Report.h"
#include "host/ScriptLine.h"

#include <QCoreApplication>

ScriptRunner::ScriptRunner(std::unique_ptr<LineSource> lines, HostWindowFactory makeWindow)
    : m_lines(std::move(lines)), m_state{.makeWindow = std::move(makeWindow)} {
    m_lines->setArrivalHandler([this] { advance(); });
}

void ScriptRunner::advance() {
    while (!m_isBusy) {
        const std::optional<QByteArray> line = m_lines->takeLine();
        if (!line)
            break;
        ++m_lineNumber;
        // A command may process events, including the arrival of more lines.
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

Outcome ScriptRunner::runLine(const QByteArray &text) {
    const std::variant<ScriptLine, QString> parsed = parseScriptLine(text);
    if (const QString *const error = std::get_if<QString>(&parsed))
        return Outcome::failed(*error);
    const auto &line = std::get<ScriptLine>(parsed);
    if (!line.command)
        return Outcome::done();
    return line.command->run({line.arguments, m_state, [this](const std::optional<QString> &error) {
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
