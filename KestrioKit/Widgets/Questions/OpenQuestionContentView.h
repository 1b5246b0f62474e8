#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

class ActionButton;
class Label;
class TextView;

/// A field to write in, and a button that answers with what is in it, be it nothing.
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
    Label *m_placeholderLabel;
    ActionButton *m_button;
};

} // namespace KestrioKit
