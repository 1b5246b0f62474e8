#pragma once

#include "KestrioKit/SurveyQuestion.h"
#include "KestrioKit/SurveyTexts.h"

#include <QColor>
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
    QuestionContentContainer(SurveyQuestion question, SurveyTexts texts, const QColor &themeColor);

    const SurveyQuestion &question() const { return m_question; }
    const SurveyTexts &texts() const { return m_texts; }
    const QColor &themeColor() const { return m_themeColor; }

private:
    SurveyQuestion m_question;
    SurveyTexts m_texts;
    QColor m_themeColor;
};

} // namespace KestrioKit
