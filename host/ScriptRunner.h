#pragma once

#include "host/Command.h"
#include "host/LineSource.h"

#include <memory>

/// Carries out a script, one command after another, and quits the application at the end of the
/// script. If a command fails, it prints a report and the exit code is 1. Used on the main thread.
class ScriptRunner {
public:
    /// Takes the lines from `lines`. Nothing runs before `advance()`.
    ScriptRunner(std::unique_ptr<LineSource> lines, HostWindowFactory makeWindow);
    Q_DISABLE_COPY_MOVE(ScriptRunner)

    /// Carries out the lines that have arrived, up to the first command that has to wait.
    void advance();

private:
    Outcome runLine(const QByteArray &text);
    void completed(const std::optional<QString> &error);
    void fail(const QString &error);

    std::unique_ptr<LineSource> m_lines;
    HostState m_state;
    int m_lineNumber = 0;
    /// True while a command is still running, and when the application is quitting.
    bool m_isBusy = false;
};
