#pragma once

#include "host/Command.h"
#include "host/LineSource.h"

#include <memory>

/// Carries out a script, one command after another, and leaves the application at its end: with
/// exit code 1, and a report, when a command failed. For the main thread.
class ScriptRunner {
public:
    explicit ScriptRunner(std::unique_ptr<LineSource> lines);
    Q_DISABLE_COPY_MOVE(ScriptRunner)

    /// Carries out what has arrived, as far as it goes without waiting.
    void advance();

private:
    Outcome runLine(const QByteArray &text);
    void completed(const std::optional<QString> &error);
    void fail(const QString &error);

    std::unique_ptr<LineSource> m_lines;
    HostState m_state;
    int m_lineNumber = 0;
    /// A command goes on, or the application is leaving.
    bool m_isBusy = false;
};
