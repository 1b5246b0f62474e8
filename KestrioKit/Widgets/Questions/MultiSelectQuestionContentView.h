#pragma once

#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

class ActionButton;
class CheckboxButton;

/// A column of check boxes, and a button that answers with those that are selected: an empty map
/// when none is. Options without an id are left out.
class MultiSelectQuestionContentView final : public QuestionContentContainer {
    Q_OBJECT

public:
    MultiSelectQuestionContentView(const Details &questionDetails, const QColor &themeColor,
                                   bool isLastQuestion);

    QWidget *firstControl() const override;

private:
    QLayout *makeColumn();
    void actionButtonTapped() const;

    QList<CheckboxButton *> m_checkboxButtons;
    ActionButton *m_actionButton;
};

} // namespace KestrioKit
