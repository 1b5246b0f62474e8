#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

class ActionButton;
class Label;
class TextView;

/// Shows a text field and a button that answers with the text of the field, which may be empty. Use
/// it on the main thread only.
class OpenQuestionContentView final : public QuestionContentContainer {
    Q_OBJECT

public:
    OpenQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                            const SurveyColors &colors);

    QWidget *firstControl() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeTextView();
    void layOutPlaceholder();
    void textViewDidChange();
    void buttonTapped();

    TextView *m_textView;
    /// Replaces the field's own placeholder, which stays at the left in a right-to-left survey.
    Label *m_placeholderLabel;
    ActionButton *m_button;
};

} // namespace KestrioKit
