#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

/// A column of options, of which pressing one answers with its id and value. An option without an
/// id does nothing.
class MultipleChoiceQuestionContentView final : public QuestionContentContainer {
    Q_OBJECT

public:
    MultipleChoiceQuestionContentView(const Details &questionDetails, const QColor &themeColor,
                                      bool isLastQuestion);

    QWidget *firstControl() const override;

private:
    void addButton(const Option &option);
    void buttonTapped(const Option &option) const;

    QList<QWidget *> m_buttons;
};

} // namespace KestrioKit
