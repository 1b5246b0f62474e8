#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

#include <QStringList>

namespace KestrioKit {

/// Shows a row of numbered buttons with a label at each end. Clicking a button answers with its
/// number. Use it on the main thread only.
class ScaleQuestionContentView : public QuestionContentContainer {
    Q_OBJECT

public:
    QWidget *firstControl() const override;

protected:
    /// Creates a button for each of `identifiers`, which become the object names. The first button
    /// has the question's `firstValue`, and each further one the next number.
    ScaleQuestionContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                             const SurveyColors &colors, const QStringList &identifiers);

private:
    QList<QWidget *> m_buttons;
};

} // namespace KestrioKit
