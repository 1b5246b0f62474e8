#pragma once

#include "KestrioKit/KestrioKitExport.h"
#include "KestrioKit/SurveyTexts.h"

#include <QString>

namespace KestrioKit {

/// Returns the accessible description of one of `count` adjacent radio buttons, such as "2 of 5".
/// `position` counts from 1. The descriptions of the first and the last button begin with
/// `firstLabel` and `lastLabel`, unless these are empty.
KESTRIOKIT_EXPORT QString radioDescription(const SurveyTexts &texts, qsizetype position,
                                           qsizetype count, const QString &firstLabel = {},
                                           const QString &lastLabel = {});

} // namespace KestrioKit
