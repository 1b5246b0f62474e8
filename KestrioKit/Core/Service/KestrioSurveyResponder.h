#pragma once

#include "KestrioKit/Core/Service/KestrioService.h"
#include "KestrioKit/Core/Survey/Survey.h"

#include <memory>

namespace KestrioKit {

/// Collects the answers to one survey on screen and reports what the visitor saw. Nothing is
/// reported for a survey without an id or a response group. Used on the main thread only.
class KestrioSurveyResponder {
public:
    KestrioSurveyResponder(std::shared_ptr<KestrioService> api, Survey survey);

    /// Stores an answer until `submit()` is called.
    void submitResponse(Request::SurveyQuestionResponse response);
    /// Reports that a question was seen. The first call also reports that the survey was seen.
    void seen(std::optional<qint64> questionId);
    /// Reports that the visitor closed the survey at that question. Only the first call has an
    /// effect.
    void closed(std::optional<qint64> questionId);
    /// Passes all answers to the service. Does nothing without answers and after the first
    /// submission.
    void submit();

private:
    /// Whether the survey has what a report requires: an id and a response group.
    bool isReported() const;
    void record(std::optional<qint64> questionId, Request::SurveyEventType event);

    std::shared_ptr<KestrioService> m_api;
    Survey m_survey;
    QList<Request::SurveyQuestionResponse> m_responses;
    bool m_sentSurveySeen = false;
    bool m_surveySubmitted = false;
    bool m_surveyCompletedOrClosed = false;
};

/// Returns the record of an answer that is given now. `seenAt` is in seconds since 1970. The empty
/// text counts as unanswered, so `answeredAt` is absent.
Request::SurveyQuestionResponse makeQuestionResponse(const Question &question,
                                                     CodableDynamicType value, double seenAt,
                                                     const Clock &clock);

} // namespace KestrioKit
