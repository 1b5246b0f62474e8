#pragma once

#include "KestrioKit/Widgets/Questions/ScaleQuestionContentView.h"

namespace KestrioKit {

/// Answers a Likert question on a scale with five values. Use it on the main thread only.
class LikertQuestionContentView final : public ScaleQuestionContentView {
    Q_OBJECT

public:
    LikertQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                              const SurveyColors &colors);
};

} // namespace KestrioKit
