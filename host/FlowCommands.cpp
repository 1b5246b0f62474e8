#include "host/CommandTable.h"
#include "host/ConditionWait.h"
#include "host/PrivateAccess.h"

#include "KestrioKit/Kestrio.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int largestExitCode = 255;

std::optional<std::chrono::milliseconds> parseMilliseconds(const QString &word) {
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    if (!isNumber || number < 0)
        return std::nullopt;
    return std::chrono::milliseconds(number);
}

Outcome notMilliseconds(const QString &word) {
    return Outcome::failed(u"\"%1\" is no number of milliseconds"_s.arg(word));
}

Outcome wait(const CommandCall &call) {
    const auto duration = parseMilliseconds(call.arguments[0]);
    if (!duration)
        return notMilliseconds(call.arguments[0]);
    QTimer::singleShot(*duration, Qt::PreciseTimer, QCoreApplication::instance(),
                       [completion = call.completion] { completion({}); });
    return Outcome::later();
}

/// A condition that `wait-for` can wait for.
struct Awaited {
    QLatin1StringView name;
    ConditionWait::Condition (*condition)(const HostState &state);
};

// The visitor becomes visible shortly before the library stops holding calls.
ConditionWait::Condition visitorIsKnown(const HostState &) {
    return [](const ConditionWait::Answer &answer) {
        if (Kestrio::shared().visitorIdentifier())
            afterPresentWork([answer] { answer(true); });
        else
            answer(false);
    };
}

ConditionWait::Condition everythingIsAnswered(const HostState &state) {
    return [&state](const ConditionWait::Answer &answer) {
        answer(state.openQuestions == 0);
    };
}

ConditionWait::Condition libraryIsIdle(const HostState &) {
    return askWhetherIdle;
}

ConditionWait::Condition surveyIsShown(const HostState &state) {
    return [&state](const ConditionWait::Answer &answer) {
        answer(state.window && state.window->surveyIsStill());
    };
}

ConditionWait::Condition surveyIsGone(const HostState &state) {
    return [&state](const ConditionWait::Answer &answer) {
        answer(!state.window || !state.window->hasSurvey());
    };
}

/// Holds if the view is visible, has not moved since the previous check and no survey is being
/// animated.
ConditionWait::Condition viewIsShown(const HostState &state, const QString &identifier) {
    return [&state, identifier, before = QRect()](const ConditionWait::Answer &answer) mutable {
        const HostWindow *const window = state.window.get();
        const auto view = window ? window->visibleView(identifier) : std::nullopt;
        const QRect frame = view ? view->frame : QRect();
        const bool isStill = view && frame == std::exchange(before, frame);
        answer(isStill && (!window->hasSurvey() || window->surveyIsStill()));
    };
}

constexpr std::array awaitable{
    Awaited{"visitor"_L1, visitorIsKnown}, Awaited{"asked"_L1, everythingIsAnswered},
    Awaited{"idle"_L1, libraryIsIdle},     Awaited{"shown"_L1, surveyIsShown},
    Awaited{"gone"_L1, surveyIsGone},
};

Outcome waitFor(const CommandCall &call) {
    const QString &name = call.arguments[0];
    const auto *const awaited = std::ranges::find(awaitable, name, &Awaited::name);
    const auto limit = parseMilliseconds(call.arguments[1]);
    if (!limit)
        return notMilliseconds(call.arguments[1]);
    ConditionWait::start(
        awaited == awaitable.end() ? viewIsShown(call.state, name) : awaited->condition(call.state),
        *limit, [completion = call.completion, name, limit = *limit](bool holds) {
            completion(holds ? std::nullopt
                             : std::optional(u"waited for %1 for %2 milliseconds"_s.arg(name).arg(
                                   limit.count())));
        });
    return Outcome::later();
}

// The outcome is "later" because no command follows this one.
Outcome quit(const CommandCall &call) {
    int code = 0;
    if (!call.arguments.isEmpty()) {
        bool isNumber = false;
        code = call.arguments[0].toInt(&isNumber);
        if (!isNumber || code < 0 || code > largestExitCode)
            return Outcome::failed(u"\"%1\" is no exit code"_s.arg(call.arguments[0]));
    }
    QCoreApplication::exit(code);
    return Outcome::later();
}

constexpr std::array commands{
    Command{"wait"_L1, "MS"_L1, Arity::exactly(1), wait},
    Command{"wait-for"_L1, "visitor|asked|idle|shown|gone|IDENTIFIER MS"_L1, Arity::exactly(2),
            waitFor},
    Command{"quit"_L1, "[CODE]"_L1, Arity{0, 1}, quit},
};

} // namespace

std::span<const Command> flowCommands() {
    return commands;
}
