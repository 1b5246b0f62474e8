#pragma once

#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Core/Session/SurveyFlow.h"

#include <QtQml/qqmlregistration.h>

// The types of the core that the screens use. The core itself does not link Qt Qml.
namespace KestrioKit::Quick {

struct QuickScreenMetrics {
    Q_GADGET
    QML_FOREIGN(KestrioKit::ScreenMetrics)
    QML_VALUE_TYPE(kestrioMetrics)
};

struct QuickScreenIdentifiers {
    Q_GADGET
    QML_FOREIGN(KestrioKit::ScreenIdentifiers)
    QML_VALUE_TYPE(kestrioIdentifiers)
};

struct QuickSurveyFlow {
    Q_GADGET
    QML_FOREIGN(KestrioKit::SurveyFlow)
    QML_NAMED_ELEMENT(KestrioFlow)
    QML_UNCREATABLE("Only the library's own screens use this type.")
};

} // namespace KestrioKit::Quick
