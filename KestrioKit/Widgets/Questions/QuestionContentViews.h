#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

/// Creates the controls that answer `question`. Returns null if the question's type is unknown. The
/// caller owns the view. `colors` must outlive it. Call it on the main thread.
QuestionContentContainer *makeContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                                          const SurveyColors &colors);

} // namespace KestrioKit
