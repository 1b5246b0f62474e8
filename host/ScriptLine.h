#pragma once

#include "host/Command.h"

#include <QByteArray>

#include <variant>

/// What a line of a script says, before anything is done.
struct ScriptLine {
    /// Null for a line without a command: a blank one, or a comment.
    const Command *command = nullptr;
    /// As many as the command takes.
    QStringList arguments;

    friend bool operator==(const ScriptLine &, const ScriptLine &) = default;
};

/// Reads one line, without its end; a text that says what is wrong with it.
std::variant<ScriptLine, QString> parseScriptLine(const QByteArray &line);
