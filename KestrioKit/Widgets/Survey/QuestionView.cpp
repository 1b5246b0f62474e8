#include "KestrioKit/Widgets/Survey/QuestionView.h"

#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/DoublePressFilter.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Drawing/KestrioUI.h"
#include "KestrioKit/Widgets/Questions/LikertQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/MultipleChoiceQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/MultiSelectQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/NpsQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/OpenQuestionContentView.h"

#include <QBoxLayout>

namespace KestrioKit {

namespace {

QuestionContentContainer *makeContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                                          const SurveyColors &colors) {
    using Type = SurveyQuestion::Type;
    switch (question.type) {
    case Type::Open:
        return new OpenQuestionContentView(question, texts, colors);
    case Type::Likert:
        return new LikertQuestionContentView(question, texts, colors);
    case Type::MultipleChoice:
        return new MultipleChoiceQuestionContentView(question, texts, colors);
    case Type::MultiSelect:
        return new MultiSelectQuestionContentView(question, texts, colors);
    case Type::Nps:
        return new NpsQuestionContentView(question, texts, colors);
    case Type::Other:
        return nullptr;
    }
    Q_UNREACHABLE();
}

// A checkable button only selects an option. Another button sends the answer.
QList<QAbstractButton *> answeringButtons(const QWidget &contentView) {
    QList<QAbstractButton *> buttons = contentView.findChildren<QAbstractButton *>();
    buttons.removeIf([](const QAbstractButton *button) { return button->isCheckable(); });
    return buttons;
}

} // namespace

QuestionView::QuestionView(const SurveyQuestion &question, const SurveyTexts &texts,
                           const SurveyColors &colors, const Clock &clock)
    : m_contentView(makeContentView(question, texts, colors)) {
    setAccessibleRole(this, QAccessible::Grouping);
    setAccessibleName(question.text);

    auto *const questionStackView = new QHBoxLayout;
    questionStackView->setSpacing(0);
    questionStackView->addWidget(new Label(question.text, TextStyle::title2, colors), 1);
    // Keeps the title clear of the close button.
    questionStackView->addSpacing(KestrioUI::Padding::medium);

    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins({});
    stackView->setSpacing(KestrioUI::Padding::regular);
    stackView->addLayout(questionStackView);
    if (!m_contentView)
        return;
    stackView->addWidget(m_contentView);
    connect(m_contentView, &QuestionContentContainer::answered, this, &QuestionView::answered);
    new DoublePressFilter(answeringButtons(*m_contentView), clock, this);
}

QWidget *QuestionView::firstControl() const {
    return m_contentView ? m_contentView->firstControl() : nullptr;
}

} // namespace KestrioKit
