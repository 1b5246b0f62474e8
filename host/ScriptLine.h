#pragma once

#include "host/Command.h"

#include <QByteArray>

#include <variant>

/// A parsed line of a script, before anything is carried out.
struct ScriptLine {
    /// Null if the line has no command because it is blank or a comment.
    const Command *command = nullptr;
    /// As many arguments as the command's `Arity` allows.
    QStringList arguments;

    friend bool operator==(const ScriptLine &, const ScriptLine &) = default;
};

/// Parses one line, which is passed without its end. Returns a message if the line is invalid.
std::variant<ScriptLine, QString> parseScriptLine(const QByteArray &line);
