#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

/// Shows a column of options. Clicking an option answers with its id and value. An option without
/// an id does nothing. Use it on the main thread only.
class MultipleChoiceQuestionContentView final : public QuestionContentContainer {
    Q_OBJECT

public:
    MultipleChoiceQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                                      const SurveyColors &colors);

    QWidget *firstControl() const override;

private:
    void addButton(const SurveyOption &option);
    void buttonTapped(const SurveyOption &option);

    QList<QWidget *> m_buttons;
};

} // namespace KestrioKit
