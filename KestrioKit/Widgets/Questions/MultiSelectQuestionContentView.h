#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

class ActionButton;
class CheckboxButton;

/// A column of check boxes, and a button that answers with those that are selected: an empty map
/// when none is. Options without an id are left out.
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
