#include "host/CommandTable.h"
#include "host/Report.h"

#include "KestrioKit/Kestrio.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

template <void (Kestrio::*operation)(const QString &)>
Outcome callWithText(const CommandCall &call) {
    (Kestrio::shared().*operation)(call.arguments[0]);
    return Outcome::done();
}

Outcome logout(const CommandCall &) {
    Kestrio::shared().logout();
    return Outcome::done();
}

Outcome setAttribute(const CommandCall &call) {
    Kestrio::shared().setVisitorAttribute(call.arguments[0], call.arguments[1]);
    return Outcome::done();
}

Outcome setQueueLimit(const CommandCall &call) {
    bool isNumber = false;
    const int limit = call.arguments[0].toInt(&isNumber);
    if (!isNumber)
        return Outcome::failed(u"the limit is no number"_s);
    Kestrio::shared().setQueueLimit(limit);
    return Outcome::done();
}

template <typename Value>
std::optional<QMap<QString, Value>> pairs(const QStringList &words) {
    if (words.size() % 2 != 0)
        return std::nullopt;
    QMap<QString, Value> map;
    for (qsizetype position = 0; position < words.size(); position += 2)
        map.insert(words[position], words[position + 1]);
    return map;
}

Outcome setAttributes(const CommandCall &call) {
    const auto attributes = pairs<QString>(call.arguments);
    if (!attributes)
        return Outcome::failed(u"the last key has no value"_s);
    Kestrio::shared().setVisitorAttributes(*attributes);
    return Outcome::done();
}

Outcome removeAttributes(const CommandCall &call) {
    Kestrio::shared().removeVisitorAttributes(call.arguments);
    return Outcome::done();
}

Outcome track(const CommandCall &call) {
    Kestrio::shared().track(call.arguments[0]);
    return Outcome::done();
}

QString nameOf(SurveyState state) {
    switch (state) {
    case SurveyState::noSurvey:
        return u"noSurvey"_s;
    case SurveyState::surveyReady:
        return u"surveyReady"_s;
    case SurveyState::disabled:
        return u"disabled"_s;
    }
    Q_UNREACHABLE();
}

Outcome ask(const CommandCall &call) {
    const QString event = call.arguments[0];
    ++call.state.openQuestions;
    Kestrio::shared().track(event, [event, &state = call.state](SurveyState surveyState) {
        --state.openQuestions;
        Report().text("ask", event).text("state", nameOf(surveyState)).print();
    });
    return Outcome::done();
}

Outcome switchSetting(const CommandCall &call, const QString &name, void (Kestrio::*set)(bool),
                      bool valueWhenOn) {
    const QString &position = call.arguments[0];
    if (position != "on"_L1 && position != "off"_L1)
        return Outcome::failed(name + u" can be on or off"_s);
    (Kestrio::shared().*set)((position == "on"_L1) == valueWhenOn);
    return Outcome::done();
}

Outcome switchNetwork(const CommandCall &call) {
    return switchSetting(call, u"the network"_s, &Kestrio::setDisableNetworkAccess, false);
}

Outcome switchRetries(const CommandCall &call) {
    return switchSetting(call, u"retries"_s, &Kestrio::setRetriesStartUp, true);
}

Outcome switchPromptSaves(const CommandCall &call) {
    return switchSetting(call, u"prompt saves"_s, &Kestrio::setSavesPromptly, true);
}

Outcome setAppearance(const CommandCall &call) {
    const QStringList names{u"light"_s, u"dark"_s, u"system"_s, u"service"_s};
    const qsizetype value = names.indexOf(call.arguments[0]);
    if (value < 0)
        return Outcome::failed(u"the appearance can be %1"_s.arg(names.join(u", "_s)));
    Kestrio::shared().setAppearance(SurveyAppearance(value));
    return Outcome::done();
}

Outcome reportVisitor(const CommandCall &) {
    Report().number("visitor", Kestrio::shared().visitorIdentifier()).print();
    return Outcome::done();
}

/// The word by which a script refers to the host's window.
constexpr auto windowWord = "window"_L1;

/// Converts the words to the arguments of the selector; absent if that is impossible.
std::optional<QVariantList> argumentsFor(const QString &selector, const QStringList &words,
                                         QObject *window) {
    if (selector == "setVisitorAttributes:"_L1) {
        const auto attributes = pairs<QVariant>(words);
        return attributes ? std::optional(QVariantList{*attributes}) : std::nullopt;
    }
    if (selector == "removeVisitorAttributes:"_L1)
        return QVariantList{words};
    QVariantList arguments(words.begin(), words.end());
    if (selector == "trackWithEventName:handler:"_L1 && words.size() == 1)
        arguments.append(QVariant());
    if (selector == "setDisableNetworkAccess:"_L1 && words.size() == 1) {
        if (words[0] != "true"_L1 && words[0] != "false"_L1)
            return std::nullopt;
        arguments = {words[0] == "true"_L1};
    }
    if (selector.startsWith("present"_L1)) {
        std::ranges::replace(arguments, QVariant(windowWord), QVariant::fromValue(window));
        if (selector == "presentSurveyWithId:from:fetchCompletion:"_L1 && words.size() == 2)
            arguments.append(QVariant());
    }
    return arguments;
}

Outcome perform(const CommandCall &call) {
    const QString &selector = call.arguments[0];
    const HostWindow *const window = call.state.window.get();
    const auto arguments =
        argumentsFor(selector, call.arguments.mid(1), window ? window->presenter() : nullptr);
    if (!arguments)
        return Outcome::failed(u"these are no arguments for %1"_s.arg(selector));
    const bool performed = Kestrio::shared().perform(selector, *arguments).has_value();
    Report().boolean("performed", performed).print();
    return Outcome::done();
}

constexpr std::array commands{
    Command{"queue-limit"_L1, "COUNT"_L1, Arity::exactly(1), setQueueLimit},
    Command{"configure"_L1, "ENV"_L1, Arity::exactly(1), callWithText<&Kestrio::configure>},
    Command{"locale"_L1, "TAG"_L1, Arity::exactly(1), callWithText<&Kestrio::setLocale>},
    Command{"user"_L1, "ID"_L1, Arity::exactly(1), callWithText<&Kestrio::setUserIdentifier>},
    Command{"email"_L1, "ADDRESS"_L1, Arity::exactly(1), callWithText<&Kestrio::setEmailAddress>},
    Command{"logout"_L1, {}, Arity::exactly(0), logout},
    Command{"attribute"_L1, "KEY VALUE"_L1, Arity::exactly(2), setAttribute},
    Command{"attributes"_L1, "KEY VALUE [KEY VALUE]..."_L1, Arity::atLeast(2), setAttributes},
    Command{"remove"_L1, "KEY..."_L1, Arity::atLeast(1), removeAttributes},
    Command{"track"_L1, "NAME"_L1, Arity::exactly(1), track},
    Command{"ask"_L1, "NAME"_L1, Arity::exactly(1), ask},
    Command{"network"_L1, "on|off"_L1, Arity::exactly(1), switchNetwork},
    Command{"retries"_L1, "on|off"_L1, Arity::exactly(1), switchRetries},
    Command{"prompt-saves"_L1, "on|off"_L1, Arity::exactly(1), switchPromptSaves},
    Command{"appearance"_L1, "light|dark|system|service"_L1, Arity::exactly(1), setAppearance},
    Command{"visitor"_L1, {}, Arity::exactly(0), reportVisitor},
    Command{"perform"_L1, "SELECTOR [ARG]..."_L1, Arity::atLeast(1), perform},
};

} // namespace

std::span<const Command> facadeCommands() {
    return commands;
}
