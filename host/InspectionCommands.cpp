#include "host/CommandTable.h"
#include "host/Report.h"
#include "host/ScreenReader.h"
#include "host/SurveyWindow.h"

#include <array>

using namespace Qt::StringLiterals;
using KestrioKit::JSONWriter;

namespace {

Outcome reportFocus(const CommandCall &call) {
    const QWidget *const focus = call.state.window ? call.state.window->focusWidget() : nullptr;
    std::optional<QString> name;
    if (focus)
        name = focus->objectName().isEmpty() ? QString::fromLatin1(focus->metaObject()->className())
                                             : focus->objectName();
    Report().text("focus", name).print();
    return Outcome::done();
}

Outcome reportTree(const CommandCall &) {
    if (const QWidget *const survey = surveyOnScreen())
        Report().value("tree", [survey](JSONWriter &json) { writeTree(json, *survey); }).print();
    else
        Report().text("tree", std::nullopt).print();
    return Outcome::done();
}

Outcome reportSpoken(const CommandCall &) {
    const QStringList spoken = takeSpoken();
    Report()
        .value("spoken",
               [&spoken](JSONWriter &json) {
                   json.beginArray();
                   for (const QString &text : spoken)
                       json.string(text);
                   json.endArray();
               })
        .print();
    return Outcome::done();
}

constexpr std::array commands{
    Command{"focus"_L1, {}, Arity::exactly(0), reportFocus},
    Command{"tree"_L1, {}, Arity::exactly(0), reportTree},
    Command{"speak"_L1, {}, Arity::exactly(0), reportSpoken},
};

} // namespace

std::span<const Command> inspectionCommands() {
    return commands;
}
