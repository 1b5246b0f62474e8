#pragma once

#include "KestrioKit/Core/Service/KestrioService.h"
#include "KestrioKit/Core/Survey/Survey.h"

#include <memory>

namespace KestrioKit {

/// Collects the answers to one survey on screen and reports what the visitor saw. A survey without
/// an id or a response group is never reported on. For the main thread.
class KestrioSurveyResponder {
public:
    KestrioSurveyResponder(std::shared_ptr<KestrioService> api, Survey survey);

    /// Keeps an answer for `submit()`.
    void submitResponse(Request::SurveyQuestionResponse response);
    /// Reports that a question was shown; the first time, that the survey was.
    void seen(std::optional<qint64> questionId);
    /// Reports, once, that the visitor closed the survey while on that question.
    void closed(std::optional<qint64> questionId);
    /// Hands all answers to the service, once; nothing while there are none.
    void submit();

private:
    bool isReported() const;
    void record(std::optional<qint64> questionId, Request::SurveyEventType event);

    std::shared_ptr<KestrioService> m_api;
    Survey m_survey;
    QList<Request::SurveyQuestionResponse> m_responses;
    bool m_sentSurveySeen = false;
    bool m_surveySubmitted = false;
    bool m_surveyCompletedOrClosed = false;
};

/// The record of an answer given now. The empty text counts as not answered.
Request::SurveyQuestionResponse makeQuestionResponse(const Question &question,
                                                     CodableDynamicType value, double seenAt,
                                                     const Clock &clock);

} // namespace KestrioKit
