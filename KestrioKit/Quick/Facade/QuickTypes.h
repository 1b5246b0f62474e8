#pragma once

#include "KestrioKit/SurveyPalette.h"
#include "KestrioKit/SurveyQuestion.h"
#include "KestrioKit/SurveySession.h"
#include "KestrioKit/SurveyTexts.h"

#include <QtQml/qqml.h>

// The public types of the core, as QML knows them. The core itself does not link Qt Qml.
namespace KestrioKit {

struct QuickSurveySession {
    Q_GADGET
    QML_FOREIGN(SurveySession)
    QML_NAMED_ELEMENT(SurveySession)
    QML_UNCREATABLE("Sessions come from Kestrio.startSurvey().")
};

struct QuickSurveyQuestion {
    Q_GADGET
    QML_FOREIGN(SurveyQuestion)
    QML_VALUE_TYPE(surveyQuestion)
};

struct QuickSurveyQuestions {
    Q_GADGET
    QML_FOREIGN(QList<SurveyQuestion>)
    QML_ANONYMOUS
    QML_SEQUENTIAL_CONTAINER(SurveyQuestion)
};

struct QuickSurveyOption {
    Q_GADGET
    QML_FOREIGN(SurveyOption)
    QML_VALUE_TYPE(surveyOption)
};

struct QuickSurveyOptions {
    Q_GADGET
    QML_FOREIGN(QList<SurveyOption>)
    QML_ANONYMOUS
    QML_SEQUENTIAL_CONTAINER(SurveyOption)
};

struct QuickSurveyTexts {
    Q_GADGET
    QML_FOREIGN(SurveyTexts)
    QML_VALUE_TYPE(surveyTexts)
};

struct QuickSurveyPalette {
    Q_GADGET
    QML_FOREIGN(SurveyPalette)
    QML_VALUE_TYPE(surveyPalette)
};

} // namespace KestrioKit
