#pragma once

#include "KestrioKit/SurveyQuestion.h"
#include "KestrioKit/SurveyTexts.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

/// Base class of the controls that answer a question. Each question type has a subclass. Use it on
/// the main thread only.
class QuestionContentContainer : public QWidget {
    Q_OBJECT

public:
    /// Returns the control that receives the focus when the page is shown, or null if there is
    /// none.
    virtual QWidget *firstControl() const = 0;

Q_SIGNALS:
    /// Emitted when the visitor answers. `SurveySession::answer()` accepts `answer`.
    void answered(const QVariant &answer);

protected:
    /// Keeps copies of `question` and `texts`. `colors` must outlive the view.
    QuestionContentContainer(SurveyQuestion question, SurveyTexts texts,
                             const SurveyColors &colors);

    const SurveyQuestion &question() const { return m_question; }
    const SurveyTexts &texts() const { return m_texts; }
    const SurveyColors &colors() const { return m_colors; }

private:
    SurveyQuestion m_question;
    SurveyTexts m_texts;
    const SurveyColors &m_colors;
};

} // namespace KestrioKit
