#include "KestrioKit/Widgets/Questions/MultiSelectQuestionContentView.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Widgets/Controls/ActionButton.h"
#include "KestrioKit/Widgets/Controls/ArrowKeys.h"
#include "KestrioKit/Widgets/Controls/CheckboxButton.h"

#include <QBoxLayout>

namespace KestrioKit {

MultiSelectQuestionContentView::MultiSelectQuestionContentView(const SurveyQuestion &question,
                                                               const SurveyTexts &texts,
                                                               const SurveyColors &colors)
    : QuestionContentContainer(question, texts, colors) {
    QLayout *const buttonsStackView = makeColumn();
    m_actionButton = new ActionButton(question.actionText, colors);
    m_actionButton->setObjectName(screenIdentifiers.multiSelectSubmitButton());
    connect(m_actionButton, &QAbstractButton::clicked, this,
            &MultiSelectQuestionContentView::actionButtonTapped);

    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins({});
    stackView->setSpacing(KestrioUI::Padding::regular);
    stackView->addLayout(buttonsStackView);
    stackView->setAlignment(buttonsStackView, Qt::AlignLeft);
    stackView->addWidget(m_actionButton, 0, Qt::AlignLeft);
}

QLayout *MultiSelectQuestionContentView::makeColumn() {
    auto *const column = new QVBoxLayout;
    column->setContentsMargins({});
    column->setSpacing(KestrioUI::Padding::tiny);
    for (const SurveyOption &option : question().options) {
        auto *const button = new CheckboxButton(option.label, colors());
        connect(button, &QAbstractButton::clicked, button, &CheckboxButton::toggleAnimated);
        column->addWidget(button);
        m_checkboxButtons.append(button);
    }
    new ArrowKeys(QList<QWidget *>(m_checkboxButtons.begin(), m_checkboxButtons.end()),
                  ArrowKeys::TabStops::each, this);
    return column;
}

QWidget *MultiSelectQuestionContentView::firstControl() const {
    if (m_checkboxButtons.isEmpty())
        return m_actionButton;
    return m_checkboxButtons.first();
}

void MultiSelectQuestionContentView::actionButtonTapped() {
    QVariantMap selected;
    for (qsizetype position = 0; position < m_checkboxButtons.size(); ++position) {
        const std::optional<qint64> id = question().options[position].id;
        if (m_checkboxButtons[position]->isChecked() && id)
            selected.insert(QString::number(*id), true);
    }
    Q_EMIT answered(selected);
}

} // namespace KestrioKit
