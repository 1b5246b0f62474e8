#include "host/CommandTable.h"
#include "host/Report.h"
#include "host/ScreenReader.h"

#include <array>

using namespace Qt::StringLiterals;
using namespace std::string_view_literals;
using KestrioKit::JSONWriter;

namespace {

Outcome reportFocus(const CommandCall &call) {
    const HostWindow *const window = call.state.window.get();
    Report().text("focus", window ? window->focusedView() : std::nullopt).print();
    return Outcome::done();
}

/// Writes null if the text is empty.
void writeText(JSONWriter &json, std::string_view key, const QString &text) {
    json.key(key);
    writeTextOrNull(json, text.isEmpty() ? std::nullopt : std::optional(text));
}

void writeFrame(JSONWriter &json, const QRect &frame) {
    json.key("frame"sv);
    json.beginArray();
    for (const int number : {frame.x(), frame.y(), frame.width(), frame.height()})
        json.integer(number);
    json.endArray();
}

void writeTree(JSONWriter &json, const ViewNode &view) {
    json.beginObject();
    writeText(json, "type", view.type);
    writeText(json, "id", view.identifier);
    writeFrame(json, view.frame);
    json.key("visible"sv);
    json.boolean(view.isVisible);
    json.key("alpha"sv);
    json.number(view.alpha);
    writeText(json, "text", view.text);
    writeText(json, "name", view.accessibleName);
    writeText(json, "role", view.role);
    json.key("children"sv);
    json.beginArray();
    for (const ViewNode &child : view.children)
        writeTree(json, child);
    json.endArray();
    json.endObject();
}

Outcome reportTree(const CommandCall &call) {
    const HostWindow *const window = call.state.window.get();
    if (const auto survey = window ? window->survey() : std::nullopt)
        Report().value("tree", [&survey](JSONWriter &json) { writeTree(json, *survey); }).print();
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
