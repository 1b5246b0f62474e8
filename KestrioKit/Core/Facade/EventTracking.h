#pragma once

#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Service/KestrioService.h"
#include "KestrioKit/Core/Survey/Survey.h"
#include "KestrioKit/SurveyState.h"

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// Sends events, and holds the survey that one of them was answered with. Thread-safe.
class EventTracking final : public std::enable_shared_from_this<EventTracking> {
public:
    using Handler = std::function<void(SurveyState)>;
    /// A handler on its way through the threads; null when there is none.
    using SharedHandler = std::shared_ptr<const Handler>;

    struct Observer {
        /// A survey is held, or is held no more. Called on any thread.
        Block surveyHeldChanged;
        /// Takes what went wrong with a request; absent when nothing did.
        std::function<void(const std::optional<Error> &error)> requestEnded;
    };

    EventTracking(std::shared_ptr<KestrioService> api, Observer observer);

    /// The survey that an event was answered with, until it has been shown.
    std::optional<Survey> survey() const { return m_survey.value(); }
    void setSurvey(std::optional<Survey> survey);

    /// Queues the event.
    void track(const QString &name);
    /// Sends the event now. The handler is told on the main thread what became of it.
    void trackForSurvey(const QString &name, const SharedHandler &handler);

private:
    SurveyState surveyReceived(const Survey &survey);

    const std::shared_ptr<KestrioService> m_api;
    const Observer m_observer;
    Atomic<std::optional<Survey>> m_survey;
};

} // namespace KestrioKit
