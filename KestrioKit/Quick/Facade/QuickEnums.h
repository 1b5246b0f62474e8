#pragma once

#include "KestrioKit/SurveyState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace KestrioKit {

/// `SurveyState` for QML, where the names of values begin with capitals.
class QuickSurveyState final {
    Q_GADGET
    QML_NAMED_ELEMENT(SurveyState)
    QML_UNCREATABLE("This type only has values.")

public:
    /// See `::SurveyState`.
    enum Value {
        NoSurvey = int(SurveyState::noSurvey),
        SurveyReady = int(SurveyState::surveyReady),
        Disabled = int(SurveyState::disabled),
    };
    Q_ENUM(Value)
};

} // namespace KestrioKit
