#pragma once

#include "KestrioKit/Widgets/Questions/ScaleQuestionContentView.h"

namespace KestrioKit {

/// A scale from 1 to 5.
class LikertQuestionContentView final : public ScaleQuestionContentView {
    Q_OBJECT

public:
    LikertQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                              const SurveyColors &colors);
};

} // namespace KestrioKit
