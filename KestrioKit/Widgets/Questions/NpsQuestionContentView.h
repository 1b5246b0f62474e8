#pragma once

#include "KestrioKit/Widgets/Questions/ScaleQuestionContentView.h"

namespace KestrioKit {

/// Answers a net promoter score question on a scale with eleven values, 0 to 10. Use it on the main
/// thread only.
class NpsQuestionContentView final : public ScaleQuestionContentView {
    Q_OBJECT

public:
    NpsQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                           const SurveyColors &colors);
};

} // namespace KestrioKit
