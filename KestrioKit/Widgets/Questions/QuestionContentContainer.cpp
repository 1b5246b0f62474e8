#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

QuestionContentContainer::QuestionContentContainer(SurveyQuestion question, SurveyTexts texts,
                                                   const SurveyColors &colors)
    : m_question(std::move(question)), m_texts(std::move(texts)), m_colors(colors) {}

} // namespace KestrioKit
