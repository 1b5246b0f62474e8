#pragma once

#include <optional>

/// What became of an event that was tracked with a handler.
enum class SurveyState : int {
    /// The event was recorded and there is nothing to show, or the request failed.
    noSurvey = 0,
    /// A survey is held and can be shown.
    surveyReady = 1,
    /// KestrioKit is not configured, has failed to start, or was disabled by the service.
    disabled = 2,
};

/// The state with that raw value, if there is one.
constexpr std::optional<SurveyState> surveyState(int rawValue) {
    if (rawValue < int(SurveyState::noSurvey) || rawValue > int(SurveyState::disabled))
        return std::nullopt;
    return SurveyState(rawValue);
}
