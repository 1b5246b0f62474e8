#pragma once

#include "KestrioKit/Widgets/Questions/ScaleQuestionContentView.h"

namespace KestrioKit {

/// The net-promoter scale, from 0 to 10.
class NpsQuestionContentView final : public ScaleQuestionContentView {
    Q_OBJECT

public:
    NpsQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                           const SurveyColors &colors);
};

} // namespace KestrioKit
