#pragma once

#include <optional>

/// The outcome of an event that was tracked with a handler.
enum class SurveyState : int {
    /// The service has returned no survey that can be shown, or the request failed.
    noSurvey = 0,
    /// A survey is held and can be shown.
    surveyReady = 1,
    /// The event was dropped: KestrioKit is not configured, has failed to start, or is disabled.
    disabled = 2,
};

/// Returns the state with the given raw value, or nothing if there is none.
constexpr std::optional<SurveyState> surveyState(int rawValue) {
    if (rawValue < int(SurveyState::noSurvey) || rawValue > int(SurveyState::disabled))
        return std::nullopt;
    return SurveyState(rawValue);
}
