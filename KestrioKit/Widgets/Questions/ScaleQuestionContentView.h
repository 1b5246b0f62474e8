#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"
#include "KestrioKit/Widgets/Questions/ScaleRow.h"

namespace KestrioKit {

/// Shows a button for each number on the question's scale, and a label at each end. Clicking a
/// button answers with its number. Use it on the main thread only.
class ScaleQuestionContentView : public QuestionContentContainer {
    Q_OBJECT

public:
    QWidget *firstControl() const override;

protected:
    /// `makeButton` decides what the buttons look like.
    ScaleQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                             const SurveyColors &colors, const ScaleRow::ButtonFactory &makeButton);

    /// Returns a factory of buttons that show their numbers. `colors` must outlive the buttons.
    static ScaleRow::ButtonFactory numberButtons(const SurveyColors &colors);

private:
    QList<QWidget *> m_buttons;
};

} // namespace KestrioKit
