#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

class ActionButton;
class CheckboxButton;

/// Shows a column of check boxes and a button that sends the answer. The answer is a map of the
/// selected options, and it is empty if none is selected. Options without an id are shown, but
/// never part of the answer. Use it on the main thread only.
class MultiSelectQuestionContentView final : public QuestionContentContainer {
    Q_OBJECT

public:
    MultiSelectQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                                   const SurveyColors &colors);

    QWidget *firstControl() const override;

private:
    QLayout *makeColumn();
    void actionButtonTapped();

    QList<CheckboxButton *> m_checkboxButtons;
    ActionButton *m_actionButton;
};

} // namespace KestrioKit
