#include "KestrioKit/Widgets/Survey/QuestionView.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/DoublePressFilter.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Questions/QuestionContentViews.h"

#include <QBoxLayout>

namespace KestrioKit {

namespace {

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
