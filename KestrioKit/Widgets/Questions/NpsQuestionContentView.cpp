#include "KestrioKit/Widgets/Questions/NpsQuestionContentView.h"

namespace KestrioKit {

NpsQuestionContentView::NpsQuestionContentView(const SurveyQuestion &question,
                                               const SurveyTexts &texts, const SurveyColors &colors)
    : ScaleQuestionContentView(question, texts, colors, numberButtons(colors)) {}

} // namespace KestrioKit
