#include "KestrioKit/Widgets/Questions/ScaleQuestionContentView.h"

#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/ArrowKeys.h"
#include "KestrioKit/Widgets/Controls/ThemedButton.h"
#include "KestrioKit/Widgets/Drawing/KestrioUI.h"
#include "KestrioKit/Widgets/Questions/LabelRow.h"
#include "KestrioKit/Widgets/Questions/ScaleRow.h"

#include <QBoxLayout>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr int height = 50;
} // namespace Constant

} // namespace

ScaleQuestionContentView::ScaleQuestionContentView(const SurveyQuestion &question,
                                                   const SurveyTexts &texts,
                                                   const SurveyColors &colors,
                                                   const QStringList &identifiers)
    : QuestionContentContainer(question, texts, colors) {
    auto *const buttonsContainerView = new ScaleRow(colors, Constant::height);
    for (int value = question.firstValue; const QString &identifier : identifiers) {
        auto *const button = new ThemedButton(QString::number(value), colors, {});
        button->setObjectName(identifier);
        connect(button, &QAbstractButton::clicked, this, [this, value] { Q_EMIT answered(value); });
        buttonsContainerView->addButton(button);
        m_buttons.append(button);
        ++value;
    }
    // The row connects after its buttons, so that they already have the new font.
    connect(&colors, &SurveyColors::changed, buttonsContainerView, &ScaleRow::layOut);
    setRadioGroup(m_buttons, texts, question.firstLabel, question.lastLabel);
    new ArrowKeys(m_buttons, ArrowKeys::TabStops::one, this);

    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins({});
    stackView->setSpacing(KestrioUI::Padding::tiny);
    stackView->addWidget(buttonsContainerView);
    stackView->addWidget(new LabelRow(question.firstLabel, question.lastLabel, colors));
}

QWidget *ScaleQuestionContentView::firstControl() const {
    return m_buttons.first();
}

} // namespace KestrioKit
