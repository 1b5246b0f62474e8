#include "KestrioKit/Core/Service/KestrioService.h"

namespace KestrioKit {

Request::TrackEvent KestrioService::trackedEvent(const QString &event) const {
    return Request::makeTrackEvent(event, Request::makeMetadata(DeviceFacts::current()),
                                   m_context.clock);
}

void KestrioService::queueEvent(const QString &event) {
    append(trackedEvent(event));
}

void KestrioService::setVisitorAttribute(const QString &key, const QString &value,
                                         const SimpleCompletion &completion) {
    append(makeQueueTask(Request::UpdateAttribute{key, value}, m_context.clock, completion));
}

void KestrioService::setVisitorAttributes(const QMap<QString, QString> &attributes,
                                          const SimpleCompletion &completion) {
    append(makeQueueTask(Request::UpdateAttributes{attributes}, m_context.clock, completion));
}

void KestrioService::removeVisitorAttributes(const QStringList &keys,
                                             const SimpleCompletion &completion) {
    append(makeQueueTask(Request::RemoveAttributes{keys}, m_context.clock, completion));
}

void KestrioService::recordSurveyEvent(qint64 surveyId, std::optional<qint64> questionId,
                                       const QString &responseGroupUid,
                                       Request::SurveyEventType event) {
    const std::optional<qint64> visitor = visitorIdentifier();
    if (!visitor)
        return;
    append(Request::SurveyEvent{.environmentId = m_networkRequests->environment(),
                                .surveyId = surveyId,
                                .questionId = questionId,
                                .visitorId = *visitor,
                                .isNew = questionId && event == Request::SurveyEventType::seen,
                                .action = event,
                                .responseGroupUid = responseGroupUid});
}

void KestrioService::submitSurveyResponse(qint64 surveyId, const QString &responseGroupUid,
                                          const QList<Request::SurveyQuestionResponse> &responses) {
    append(
        Request::SurveyResponse{.surveyId = surveyId,
                                .body = {.responses = responses,
                                         .metadata = Request::makeMetadata(DeviceFacts::current()),
                                         .responseGroupUid = responseGroupUid},
                                .completedAt = m_context.clock.secondsSince1970()});
}

void KestrioService::recordError(const Error &error, const Request::Metadata::Extra &extra) {
    recordError(error, std::nullopt, extra);
}

void KestrioService::recordError(const Error &error, const std::optional<QString> &stack,
                                 const Request::Metadata::Extra &extra) {
    append(Request::RecordError{.environmentId = m_networkRequests->environment(),
                                .visitorId = visitorIdentifier(),
                                .userAgent = m_sessions.userAgent().uaHeaderValue(),
                                .metadata =
                                    Request::makeMetadata(DeviceFacts::current(), {}, {}, extra),
                                .details = {error.localizedDescription, stack}});
}

} // namespace KestrioKit
