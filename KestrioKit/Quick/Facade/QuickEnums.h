#pragma once

#include "KestrioKit/SurveyAppearance.h"
#include "KestrioKit/SurveyState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// Enumerations for QML, where the names of values begin with capitals.
namespace KestrioKit {

/// See `::SurveyState`.
namespace QuickSurveyState {
Q_NAMESPACE
QML_NAMED_ELEMENT(SurveyState)

enum Value {
    NoSurvey = int(SurveyState::noSurvey),
    SurveyReady = int(SurveyState::surveyReady),
    Disabled = int(SurveyState::disabled),
};
Q_ENUM_NS(Value)
} // namespace QuickSurveyState

/// See `::SurveyAppearance`.
namespace QuickSurveyAppearance {
Q_NAMESPACE
QML_NAMED_ELEMENT(SurveyAppearance)

enum Value {
    Light = int(SurveyAppearance::light),
    Dark = int(SurveyAppearance::dark),
    System = int(SurveyAppearance::system),
    Service = int(SurveyAppearance::service),
};
Q_ENUM_NS(Value)
} // namespace QuickSurveyAppearance

} // namespace KestrioKit
