#include "KestrioKit/Widgets/Survey/QuestionView.h"

#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/DoublePressFilter.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Drawing/Fonts.h"
#include "KestrioKit/Widgets/Drawing/KestrioUI.h"
#include "KestrioKit/Widgets/Questions/LikertQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/MultipleChoiceQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/MultiSelectQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/NpsQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/OpenQuestionContentView.h"

#include <QBoxLayout>

namespace KestrioKit {

namespace {

QuestionContentContainer *makeContentView(const Question &question, const QColor &themeColor,
                                          bool isLastQuestion) {
    const Details &details = question.details;
    switch (question.type.kind) {
    case QuestionType::open:
        return new OpenQuestionContentView(details, themeColor, isLastQuestion);
    case QuestionType::likert:
        return new LikertQuestionContentView(details, themeColor, isLastQuestion);
    case QuestionType::multipleChoice:
        return new MultipleChoiceQuestionContentView(details, themeColor, isLastQuestion);
    case QuestionType::multiSelect:
        return new MultiSelectQuestionContentView(details, themeColor, isLastQuestion);
    case QuestionType::nps:
        return new NpsQuestionContentView(details, themeColor, isLastQuestion);
    case QuestionType::other:
        return nullptr;
    }
    Q_UNREACHABLE();
}

// What can be checked is part of an answer that another button sends.
QList<QAbstractButton *> answeringButtons(const QWidget &contentView) {
    QList<QAbstractButton *> buttons = contentView.findChildren<QAbstractButton *>();
    buttons.removeIf([](const QAbstractButton *button) { return button->isCheckable(); });
    return buttons;
}

} // namespace

QuestionView::QuestionView(const Question &question, const QColor &themeColor, bool isLastQuestion,
                           const Clock &clock)
    : m_seenAt(clock.secondsSince1970()),
      m_contentView(makeContentView(question, themeColor, isLastQuestion)) {
    setAccessibleRole(this, QAccessible::Grouping);
    setAccessibleName(question.details.text);

    auto *const questionStackView = new QHBoxLayout;
    questionStackView->setSpacing(0);
    questionStackView->addWidget(new Label(question.details.text,
                                           preferredBoldFont(TextStyle::title2),
                                           KestrioUI::Color::text()),
                                 1);
    // Keeps the title clear of the close button.
    questionStackView->addSpacing(KestrioUI::Padding::medium);

    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins({});
    stackView->setSpacing(KestrioUI::Padding::regular);
    stackView->addLayout(questionStackView);
    if (!m_contentView)
        return;
    stackView->addWidget(m_contentView);
    new DoublePressFilter(answeringButtons(*m_contentView), clock, this);
}

void QuestionView::setDelegate(WeakDelegate<QuestionDelegate> delegate) {
    m_delegate = std::move(delegate);
    if (m_contentView)
        m_contentView->setDelegate(this);
}

QWidget *QuestionView::firstControl() const {
    return m_contentView ? m_contentView->firstControl() : nullptr;
}

void QuestionView::questionDidFinish(const std::optional<CodableDynamicType> &response) {
    if (auto *const delegate = m_delegate.get())
        delegate->questionDidFinish(response, m_seenAt);
}

} // namespace KestrioKit
