#pragma once

#include "KestrioKit/SurveyAppearance.h"
#include "KestrioKit/SurveyQuestion.h"
#include "KestrioKit/SurveyState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// Enumerations for QML, where the names of values begin with capitals. QML may assign any number to
// them, so their underlying type is fixed.
namespace KestrioKit {

/// See `::SurveyState`.
namespace QuickSurveyState {
Q_NAMESPACE
QML_NAMED_ELEMENT(SurveyState)

enum Value : int {
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

enum Value : int {
    Light = int(SurveyAppearance::light),
    Dark = int(SurveyAppearance::dark),
    System = int(SurveyAppearance::system),
    Service = int(SurveyAppearance::service),
};
Q_ENUM_NS(Value)
} // namespace QuickSurveyAppearance

/// See `::SurveyQuestion::Type`. The value type `surveyQuestion` cannot hold these, because QML
/// finds enumerations by names with capitals.
namespace QuickQuestionType {
Q_NAMESPACE
QML_NAMED_ELEMENT(SurveyQuestion)

enum Value : int {
    Other = int(SurveyQuestion::Type::Other),
    Open = int(SurveyQuestion::Type::Open),
    Likert = int(SurveyQuestion::Type::Likert),
    MultipleChoice = int(SurveyQuestion::Type::MultipleChoice),
    MultiSelect = int(SurveyQuestion::Type::MultiSelect),
    Nps = int(SurveyQuestion::Type::Nps),
};
Q_ENUM_NS(Value)
} // namespace QuickQuestionType

} // namespace KestrioKit
