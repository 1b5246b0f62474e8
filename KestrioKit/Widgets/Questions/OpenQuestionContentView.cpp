#include "KestrioKit/Widgets/Questions/OpenQuestionContentView.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/KeyboardObserver.h"
#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/ActionButton.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Controls/TextView.h"

#include <QBoxLayout>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr int inset = screenMetrics.textFieldInset;
} // namespace Constant

} // namespace

OpenQuestionContentView::OpenQuestionContentView(const SurveyQuestion &question,
                                                 const SurveyTexts &texts,
                                                 const SurveyColors &colors)
    : QuestionContentContainer(question, texts, colors),
      m_textView(new TextView(colors, Constant::inset, screenMetrics.textFieldHeight)),
      m_placeholderLabel(
          new Label(texts.placeholder, TextStyle::body, colors, &SurveyPalette::secondaryText)),
      m_button(new ActionButton(question.actionText, colors)) {
    makeTextView();
    m_button->setObjectName(screenIdentifiers.textSubmitButton());
    connect(m_button, &QAbstractButton::clicked, this, &OpenQuestionContentView::buttonTapped);

    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins({});
    stackView->setSpacing(KestrioUI::Padding::tiny);
    stackView->addWidget(m_textView);
    stackView->addWidget(m_button, 0, Qt::AlignLeft);
}

void OpenQuestionContentView::makeTextView() {
    m_textView->setObjectName(screenIdentifiers.textField());
    m_textView->setAccessibleName(m_placeholderLabel->text());
    m_textView->installEventFilter(this);
    connect(m_textView, &QTextEdit::textChanged, this, &OpenQuestionContentView::textViewDidChange);
    m_placeholderLabel->setParent(m_textView);
    m_placeholderLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&colors(), &SurveyColors::changed, this, &OpenQuestionContentView::layOutPlaceholder);
}

QWidget *OpenQuestionContentView::firstControl() const {
    return m_textView;
}

bool OpenQuestionContentView::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize)
        layOutPlaceholder();
    return QuestionContentContainer::eventFilter(watched, event);
}

void OpenQuestionContentView::layOutPlaceholder() {
    constexpr int inset = Constant::inset;
    const QRect text = m_textView->rect().adjusted(inset, inset, -inset, 0);
    m_placeholderLabel->setGeometry(text.x(), text.y(), text.width(),
                                    m_placeholderLabel->heightForWidth(text.width()));
}

void OpenQuestionContentView::textViewDidChange() {
    m_placeholderLabel->setHidden(m_textView->isShowingText());
}

void OpenQuestionContentView::buttonTapped() {
    // Text that an input method is still composing belongs to the answer.
    KeyboardObserver::commit();
    m_button->setFocus(Qt::OtherFocusReason);
    Q_EMIT answered(m_textView->typedText());
}

} // namespace KestrioKit
