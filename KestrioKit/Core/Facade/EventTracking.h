#pragma once

#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Service/KestrioService.h"
#include "KestrioKit/Core/Survey/Survey.h"
#include "KestrioKit/SurveyState.h"

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// Sends events, and holds the survey that the service returned for one of them. Thread-safe.
class EventTracking final : public std::enable_shared_from_this<EventTracking> {
public:
    using Handler = std::function<void(SurveyState)>;
    /// A handler shared between threads; null if there is none.
    using SharedHandler = std::shared_ptr<const Handler>;

    struct Observer {
        /// Called on any thread when a survey begins or ceases to be held.
        Block surveyHeldChanged;
        /// Receives the error of a completed request; absent if there was none.
        std::function<void(const std::optional<Error> &error)> requestEnded;
    };

    EventTracking(std::shared_ptr<KestrioService> api, Observer observer);

    /// Returns the held survey, if there is one.
    std::optional<Survey> survey() const { return m_survey.value(); }
    /// Replaces the held survey; absent means that no survey is held.
    void setSurvey(std::optional<Survey> survey);

    /// Queues the event.
    void track(const QString &name);
    /// Sends the event immediately. The handler receives the outcome on the main thread.
    void trackForSurvey(const QString &name, const SharedHandler &handler);

private:
    SurveyState surveyReceived(const Survey &survey);

    const std::shared_ptr<KestrioService> m_api;
    const Observer m_observer;
    Atomic<std::optional<Survey>> m_survey;
};

} // namespace KestrioKit
