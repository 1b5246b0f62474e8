#include "KestrioKit/Widgets/Questions/MultipleChoiceQuestionContentView.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/ArrowKeys.h"
#include "KestrioKit/Widgets/Controls/ThemedButton.h"

#include <QBoxLayout>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr QMargins buttonInsets(screenMetrics.optionHorizontalInset,
                                screenMetrics.optionVerticalInset,
                                screenMetrics.optionHorizontalInset,
                                screenMetrics.optionVerticalInset);
} // namespace Constant

} // namespace

MultipleChoiceQuestionContentView::MultipleChoiceQuestionContentView(const SurveyQuestion &question,
                                                                     const SurveyTexts &texts,
                                                                     const SurveyColors &colors)
    : QuestionContentContainer(question, texts, colors) {
    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins({});
    stackView->setSpacing(KestrioUI::Padding::tiny);
    for (const SurveyOption &option : question.options)
        addButton(option);
    setRadioGroup(m_buttons, texts);
    new ArrowKeys(m_buttons, ArrowKeys::TabStops::one, this);
}

void MultipleChoiceQuestionContentView::addButton(const SurveyOption &option) {
    auto *const button = new ThemedButton(option.label, colors(),
                                          {.insets = Constant::buttonInsets,
                                           .alignment = Qt::AlignLeft,
                                           .cornerRadius = KestrioUI::CornerRadius::r3,
                                           .borderWidth = KestrioUI::BorderWidth::b1});
    button->setObjectName(screenIdentifiers.multipleChoiceOption(option.label));
    connect(button, &QAbstractButton::clicked, this, [this, option] { buttonTapped(option); });
    layout()->addWidget(button);
    m_buttons.append(button);
}

QWidget *MultipleChoiceQuestionContentView::firstControl() const {
    return m_buttons.isEmpty() ? nullptr : m_buttons.first();
}

// The id is the key of the answer, so an option without an id cannot be sent.
void MultipleChoiceQuestionContentView::buttonTapped(const SurveyOption &option) {
    if (option.id)
        Q_EMIT answered(QVariantMap{{QString::number(*option.id), option.value}});
}

} // namespace KestrioKit
