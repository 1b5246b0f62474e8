#include "KestrioKit/Widgets/Questions/LikertQuestionContentView.h"

namespace KestrioKit {

LikertQuestionContentView::LikertQuestionContentView(const SurveyQuestion &question,
                                                     const SurveyTexts &texts,
                                                     const SurveyColors &colors)
    : ScaleQuestionContentView(question, texts, colors, numberButtons(colors)) {}

} // namespace KestrioKit
