#pragma once

#include <QLatin1StringView>
#include <QPoint>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <limits>
#include <memory>
#include <optional>

/// What the commands of one script share.
struct HostState {
    /// The handlers given to the library that it has not called yet.
    int openQuestions = 0;
    /// The host's window, once a command has asked for it.
    std::unique_ptr<QWidget> window;
    /// Where on the window the mouse button is held down.
    std::optional<QPoint> pressedAt;
};

/// Ends a command that went on after its call: without an error, it has succeeded.
using Completion = std::function<void(const std::optional<QString> &error)>;

/// One command of the script, as its function gets it.
struct CommandCall {
    QStringList arguments;
    HostState &state;
    /// To be called once, and later, if the function's outcome is `Outcome::Kind::later`.
    Completion completion;
};

/// What a command's function has come to.
struct Outcome {
    enum class Kind { done, failed, later };

    Kind kind = Kind::done;
    /// With `failed`: why.
    QString error = {};

    static Outcome done() { return {}; }
    static Outcome later() { return {Kind::later}; }
    static Outcome failed(QString error) { return {Kind::failed, std::move(error)}; }
    /// Of a command that needs the window before there is one.
    static Outcome noWindow() {
        return failed(QStringLiteral("there is no window; say window W H first"));
    }
};

/// How many arguments a command takes.
struct Arity {
    static constexpr qsizetype unlimited = std::numeric_limits<qsizetype>::max();

    qsizetype least;
    qsizetype most;
    /// The one argument is the rest of the line as it stands, not split into words.
    bool restOfLine = false;

    static constexpr Arity exactly(qsizetype count) { return {count, count}; }
    static constexpr Arity atLeast(qsizetype count) { return {count, unlimited}; }
    static constexpr Arity wholeLine() { return {1, 1, true}; }
};

/// A row of the command table.
struct Command {
    QLatin1StringView name;
    /// The arguments, as an error shows them.
    QLatin1StringView usage;
    Arity arity;
    Outcome (*run)(const CommandCall &call);
};
