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
    /// A button for each of `identifiers`, the first standing for `firstValue`.
    ScaleQuestionContentView(const Details &questionDetails, const QColor &themeColor,
                             bool isLastQuestion, const QStringList &identifiers, qint64 firstValue,
                             const Labels &labels);

private:
    QList<QWidget *> m_buttons;
};

} // namespace KestrioKit
