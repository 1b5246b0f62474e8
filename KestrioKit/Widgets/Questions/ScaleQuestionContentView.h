#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

#include <QStringList>

namespace KestrioKit {

/// A row of numbers of which pressing one answers with it, and a label at each end.
class ScaleQuestionContentView : public QuestionContentContainer {
    Q_OBJECT

public:
    QWidget *firstControl() const override;

protected:
    /// A button for each of `identifiers`, the first standing for the question's `firstValue`.
    ScaleQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                             const SurveyColors &colors, const QStringList &identifiers);

private:
    QList<QWidget *> m_buttons;
};

} // namespace KestrioKit
