#include "KestrioKit/Core/Facade/EventTracking.h"

#include "KestrioKit/Core/Facade/FacadeLog.h"
#include "KestrioKit/Core/Facade/SurveyPresentation.h"
#include "KestrioKit/Core/Platform/Threads/MainThread.h"

#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

EventTracking::EventTracking(std::shared_ptr<KestrioService> api, Observer observer)
    : m_api(std::move(api)), m_observer(std::move(observer)) {}

void EventTracking::setSurvey(std::optional<Survey> survey) {
    const bool isHeld = survey.has_value();
    const auto before =
        m_survey.mutate([&survey](auto &held) { return std::exchange(held, std::move(survey)); });
    if (before.has_value() != isHeld)
        m_observer.surveyHeldChanged();
}

void EventTracking::track(const QString &name) {
    m_api->queueEvent(name);
}

void EventTracking::trackForSurvey(const QString &name, const SharedHandler &handler) {
    m_api->trackEvent(
        name, [self = shared_from_this(), handler](const ServiceAnswer<Survey> &answer) {
            if (answer.value) {
                callOnMain(handler, self->surveyReceived(*answer.value));
                return;
            }
            const bool disabled = answer.error && isDisabledError(*answer.error);
            callOnMain(handler, disabled ? SurveyState::disabled : SurveyState::noSurvey);
            self->m_observer.requestEnded(answer.error);
        });
}

SurveyState EventTracking::surveyReceived(const Survey &survey) {
    logLine(u"Received %1 questions"_s.arg(survey.questions.size()), LogCategory::info);
    if (survey.questions.isEmpty() || !survey.preflight())
        return SurveyState::noSurvey;
    speakLanguage(survey);
    // A held survey that has not been shown yet takes precedence.
    const bool isNew = m_survey.mutate([&survey](std::optional<Survey> &held) {
        const bool isFirst = !held;
        if (isFirst)
            held = survey;
        return isFirst;
    });
    if (isNew)
        m_observer.surveyHeldChanged();
    return SurveyState::surveyReady;
}

} // namespace KestrioKit
