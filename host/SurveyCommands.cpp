#include "host/CommandTable.h"
#include "host/PrivateAccess.h"
#include "host/Report.h"

#include <array>

using namespace Qt::StringLiterals;
using KestrioKit::JSONWriter;

namespace {

Outcome reportSurvey(const CommandCall &) {
    const std::optional<HeldSurvey> survey = heldSurvey();
    Report line;
    line.number("survey", survey ? survey->surveyId : std::nullopt);
    if (survey)
        line.number("questions", survey->questionCount);
    line.print();
    return Outcome::done();
}

void writeAnswers(JSONWriter &json, const AnsweredSurvey &answered) {
    json.beginArray();
    for (const auto &[question, value] : answered.answers) {
        json.beginArray();
        json.integer(question);
        KestrioKit::JSONCoding<KestrioKit::CodableDynamicType>::encode(json, value);
        json.endArray();
    }
    json.endArray();
}

Outcome answerSurvey(const CommandCall &call) {
    const auto result = answerHeldSurvey(call.arguments[0].toUtf8());
    if (const auto *const error = std::get_if<QString>(&result))
        return Outcome::failed(*error);
    const auto &answered = std::get<AnsweredSurvey>(result);
    Report()
        .value("answered", [&answered](JSONWriter &json) { writeAnswers(json, answered); })
        .number("next", answered.next)
        .print();
    return Outcome::done();
}

Outcome closeSurvey(const CommandCall &) {
    return closeHeldSurvey() ? Outcome::done() : Outcome::failed(u"no survey is held"_s);
}

constexpr std::array commands{
    Command{"survey"_L1, {}, Arity::exactly(0), reportSurvey},
    Command{"answer"_L1, "JSON"_L1, Arity::wholeLine(), answerSurvey},
    Command{"close"_L1, {}, Arity::exactly(0), closeSurvey},
};

} // namespace

std::span<const Command> surveyCommands() {
    return commands;
}
