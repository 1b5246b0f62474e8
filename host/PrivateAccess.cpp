#include "host/PrivateAccess.h"

#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Core/Service/KestrioSurveyResponder.h"
#include "KestrioKit/Core/Survey/Routing.h"

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

using Answers = QList<CodableDynamicType>;

/// The indexes of the questions in the order they are asked: one for each answer, then the next
/// one.
using Route = QList<qint64>;

// A held call that is released between two checks travels from the library's thread to the main
// thread and back. The third check is the first that certainly includes what the call sends.
constexpr int idleAnswersInARow = 3;

bool isInside(const QList<Question> &questions, qint64 index) {
    return index >= 0 && index < questions.size();
}

std::variant<Route, QString> route(const QList<Question> &questions, const Answers &answers) {
    Route indexes{0};
    for (const CodableDynamicType &answer : answers) {
        if (!isInside(questions, indexes.last()))
            return u"%1 answers, but the survey ends after %2"_s.arg(answers.size())
                .arg(indexes.size() - 1);
        indexes.append(nextQuestionIndex(questions, indexes.last(), answer));
    }
    return indexes;
}

AnsweredSurvey give(const Survey &survey, const Answers &answers, const Route &indexes) {
    const Clock &clock = Clock::system();
    KestrioSurveyResponder responder(KestrioCore::shared()->api(), survey);
    AnsweredSurvey given{{}, indexes.last()};
    for (qsizetype turn = 0; turn < indexes.size(); ++turn) {
        if (!isInside(survey.questions, indexes[turn]))
            break;
        const Question &question = survey.questions.at(indexes[turn]);
        const double seenAt = clock.secondsSince1970();
        responder.seen(question.name);
        if (turn == answers.size())
            break;
        responder.submitResponse(makeQuestionResponse(question, answers[turn], seenAt, clock));
        given.answers.append({question.name, answers[turn]});
    }
    responder.submit();
    KestrioCore::shared()->setSurvey(std::nullopt);
    return given;
}

void askAgain(int answersLeft, const std::function<void(bool)> &answer) {
    KestrioCore::shared()->api()->reportIdle([answersLeft, answer](bool idle) {
        DispatchQueue::main().async([answersLeft, answer, idle] {
            if (idle && answersLeft > 1)
                askAgain(answersLeft - 1, answer);
            else
                answer(idle);
        });
    });
}

} // namespace

std::optional<HeldSurvey> heldSurvey() {
    const std::optional<Survey> survey = KestrioCore::shared()->survey();
    if (!survey)
        return std::nullopt;
    return HeldSurvey{survey->surveyId, survey->questions.size()};
}

std::variant<AnsweredSurvey, QString> answerHeldSurvey(const QByteArray &json) {
    const std::optional<Survey> survey = KestrioCore::shared()->survey();
    if (!survey)
        return u"no survey is held"_s;
    const Decoded<Answers> answers = decodeJSON<Answers>(json);
    if (const auto *const error = std::get_if<DecodingError>(&answers))
        return u"not a JSON array of answers: %1"_s.arg(error->toError().localizedDescription);
    const auto indexes = route(survey->questions, std::get<Answers>(answers));
    if (const auto *const error = std::get_if<QString>(&indexes))
        return *error;
    return give(*survey, std::get<Answers>(answers), std::get<Route>(indexes));
}

bool closeHeldSurvey() {
    const auto core = KestrioCore::shared();
    const std::optional<Survey> survey = core->survey();
    if (!survey)
        return false;
    KestrioSurveyResponder responder(core->api(), *survey);
    responder.closed(survey->questions.first().name);
    responder.submit();
    core->setSurvey(std::nullopt);
    return true;
}

void askWhetherIdle(const std::function<void(bool)> &answer) {
    askAgain(idleAnswersInARow, answer);
}

void afterPresentWork(std::function<void()> done) {
    KestrioCore::shared()->api()->reportIdle(
        [done = std::move(done)](bool) { DispatchQueue::main().async(done); });
}
