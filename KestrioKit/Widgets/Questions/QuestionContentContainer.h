#pragma once

#include "KestrioKit/SurveyQuestion.h"
#include "KestrioKit/SurveyTexts.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

/// What a page lets the visitor answer its question with: one class per type of question. For the
/// main thread.
class QuestionContentContainer : public QWidget {
    Q_OBJECT

public:
    /// The control that gets the focus when the page comes; null when there is none.
    virtual QWidget *firstControl() const = 0;

Q_SIGNALS:
    /// The visitor has answered, with a value that `SurveySession::answer()` takes.
    void answered(const QVariant &answer);

protected:
    /// `colors` outlives the view.
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
