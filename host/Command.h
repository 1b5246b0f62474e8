#pragma once

#include "host/HostWindow.h"

#include <QLatin1StringView>
#include <QPoint>
#include <QStringList>

#include <functional>
#include <limits>
#include <memory>
#include <optional>

/// The state that the commands of one script share.
struct HostState {
    /// The number of handlers that the library has yet to call.
    int openQuestions = 0;
    HostWindowFactory makeWindow = {};
    /// Null until a command creates it.
    std::unique_ptr<HostWindow> window = nullptr;
    /// The window position at which the mouse button is held down; absent while it is up.
    std::optional<QPoint> pressedAt = {};
};

/// Finishes a command that did not finish within its function. Without an error, the command
/// succeeded.
using Completion = std::function<void(const std::optional<QString> &error)>;

/// One command of the script, as its function receives it.
struct CommandCall {
    /// As many arguments as the command's `Arity` allows.
    QStringList arguments;
    HostState &state;
    /// Called exactly once, after the function returns, if the outcome is `Outcome::Kind::later`.
    /// Otherwise it is not called.
    Completion completion;
};

/// The result of a command's function.
struct Outcome {
    enum class Kind { done, failed, later };

    Kind kind = Kind::done;
    /// The reason if `kind` is `failed`; otherwise empty.
    QString error = {};

    static Outcome done() { return {}; }
    static Outcome later() { return {Kind::later}; }
    static Outcome failed(QString error) { return {Kind::failed, std::move(error)}; }
    /// The failure of a command that needs the window before it exists.
    static Outcome noWindow() {
        return failed(QStringLiteral("there is no window; say window W H first"));
    }
};

/// How many arguments a command takes.
struct Arity {
    static constexpr qsizetype unlimited = std::numeric_limits<qsizetype>::max();

    qsizetype least;
    qsizetype most;
    /// Whether the only argument is the rest of the line, which is not split into words.
    bool restOfLine = false;

    static constexpr Arity exactly(qsizetype count) { return {count, count}; }
    static constexpr Arity atLeast(qsizetype count) { return {count, unlimited}; }
    static constexpr Arity wholeLine() { return {1, 1, true}; }
};

/// A row of the command table.
struct Command {
    QLatin1StringView name;
    /// The arguments as an error message shows them.
    QLatin1StringView usage;
    Arity arity;
    /// Carries out the command on the main thread.
    Outcome (*run)(const CommandCall &call);
};
