#include "KestrioKit/Core/Service/KestrioSurveyResponder.h"

namespace KestrioKit {

using Request::SurveyEventType;

KestrioSurveyResponder::KestrioSurveyResponder(std::shared_ptr<KestrioService> api, Survey survey)
    : m_api(std::move(api)), m_survey(std::move(survey)) {}

bool KestrioSurveyResponder::isReported() const {
    return m_survey.surveyId && m_survey.responseGroupUid;
}

void KestrioSurveyResponder::record(std::optional<qint64> questionId, SurveyEventType event) {
    m_api->recordSurveyEvent(*m_survey.surveyId, questionId, *m_survey.responseGroupUid, event);
}

void KestrioSurveyResponder::submitResponse(Request::SurveyQuestionResponse response) {
    m_responses.append(std::move(response));
}

void KestrioSurveyResponder::seen(std::optional<qint64> questionId) {
    if (!isReported())
        return;
    if (!m_sentSurveySeen) {
        record(std::nullopt, SurveyEventType::seen);
        m_sentSurveySeen = true;
    }
    record(questionId, SurveyEventType::seen);
}

void KestrioSurveyResponder::closed(std::optional<qint64> questionId) {
    if (!isReported() || m_surveyCompletedOrClosed)
        return;
    m_surveyCompletedOrClosed = true;
    record(questionId, SurveyEventType::closed);
}

void KestrioSurveyResponder::submit() {
    if (!isReported() || m_responses.isEmpty() || m_surveySubmitted)
        return;
    m_api->submitSurveyResponse(*m_survey.surveyId, *m_survey.responseGroupUid, m_responses);
    m_surveySubmitted = true;
}

Request::SurveyQuestionResponse makeQuestionResponse(const Question &question,
                                                     CodableDynamicType value, double seenAt,
                                                     const Clock &clock) {
    const QString *const text = value.asString();
    std::optional<double> answeredAt;
    if (!text || !text->isEmpty())
        answeredAt = clock.secondsSince1970();
    return {.questionId = question.name,
            .value = std::move(value),
            .seenAt = seenAt,
            .answeredAt = answeredAt,
            .questionType = question.type};
}

} // namespace KestrioKit
