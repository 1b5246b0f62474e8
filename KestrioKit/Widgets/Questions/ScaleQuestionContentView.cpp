#include "KestrioKit/Widgets/Questions/ScaleQuestionContentView.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/ArrowKeys.h"
#include "KestrioKit/Widgets/Controls/ThemedButton.h"
#include "KestrioKit/Widgets/Questions/LabelRow.h"

#include <QBoxLayout>

namespace KestrioKit {

ScaleQuestionContentView::ScaleQuestionContentView(const SurveyQuestion &question,
                                                   const SurveyTexts &texts,
                                                   const SurveyColors &colors,
                                                   const ScaleRow::ButtonFactory &makeButton)
    : QuestionContentContainer(question, texts, colors) {
    auto *const buttonsContainerView = new ScaleRow(question.firstValue, question.lastValue,
                                                    makeButton, colors, screenMetrics.scaleHeight);
    for (int value = question.firstValue;
         const ThemedButton *const button : buttonsContainerView->buttons()) {
        connect(button, &QAbstractButton::clicked, this, [this, value] { Q_EMIT answered(value); });
        ++value;
    }
    m_buttons = {buttonsContainerView->buttons().begin(), buttonsContainerView->buttons().end()};
    setRadioGroup(m_buttons, texts, question.firstLabel, question.lastLabel);
    new ArrowKeys(m_buttons, ArrowKeys::TabStops::one, this);

    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins({});
    stackView->setSpacing(KestrioUI::Padding::tiny);
    stackView->addWidget(buttonsContainerView);
    stackView->addWidget(new LabelRow(question.firstLabel, question.lastLabel, colors));
}

ScaleRow::ButtonFactory ScaleQuestionContentView::numberButtons(const SurveyColors &colors) {
    return [&colors](int value) {
        auto *const button = new ThemedButton(QString::number(value), colors, {});
        button->setObjectName(screenIdentifiers.scaleOption(value));
        return button;
    };
}

QWidget *ScaleQuestionContentView::firstControl() const {
    return m_buttons.first();
}

} // namespace KestrioKit
