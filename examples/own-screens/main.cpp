#include <KestrioKit/Kestrio.h>

#include <QtWidgets>

// Draws a survey with plain widgets, one question at a time.
class Screen : public QMainWindow {
public:
    explicit Screen(std::unique_ptr<SurveySession> session) : m_session(std::move(session)) {
        setLayoutDirection(m_session->layoutDirection());
        connect(m_session.get(), &SurveySession::currentQuestionChanged, this, &Screen::showPage);
        showPage();
    }

private:
    using Type = SurveyQuestion::Type;

    void showPage() {
        const SurveyQuestion question = m_session->currentQuestion();
        setCentralWidget(new QWidget); // deletes the previous page
        new QVBoxLayout(centralWidget());
        add(new QLabel(m_session->isComplete() ? m_session->texts().thanks : question.text));
        if (m_session->isComplete())
            return m_session->finish();
        addAnswers(question);
        m_session->markSeen();
    }

    void addAnswers(const SurveyQuestion &question) {
        if (question.type == Type::Likert || question.type == Type::Nps) {
            add(new QLabel(question.firstLabel + " ... " + question.lastLabel));
            for (int value = question.firstValue; value <= question.lastValue; ++value)
                addButton(QString::number(value), [value] { return value; });
        } else if (question.type == Type::MultipleChoice) {
            for (const SurveyOption &option : question.options)
                addButton(option.label, [option] {
                    return QVariantMap{{option.idOrNull().toString(), option.value}};
                });
        } else if (question.type == Type::MultiSelect) {
            for (const SurveyOption &option : question.options)
                add(new QCheckBox(option.label))->setObjectName(option.idOrNull().toString());
            addButton(question.actionText, [this] { return checkedOptions(); });
        } else if (question.type == Type::Open) {
            auto *field = add(new QPlainTextEdit);
            field->setObjectName("answer");
            addButton(question.actionText, [field] { return field->toPlainText(); });
        }
    }

    QVariantMap checkedOptions() const {
        QVariantMap checked;
        for (const QCheckBox *box : centralWidget()->findChildren<QCheckBox *>())
            if (box->isChecked())
                checked[box->objectName()] = true;
        return checked;
    }

    void addButton(const QString &text, const std::function<QVariant()> &answer) {
        connect(add(new QPushButton(text)), &QPushButton::clicked, this,
                [this, answer] { m_session->answer(answer()); });
    }

    template <typename Widget>
    Widget *add(Widget *widget) {
        centralWidget()->layout()->addWidget(widget);
        return widget;
    }

    std::unique_ptr<SurveySession> m_session;
};

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("own-screens");

    std::unique_ptr<Screen> screen;
    Kestrio::shared().configure("my-environment");
    Kestrio::shared().track("Button Pressed", [&screen](SurveyState) {
        std::unique_ptr<SurveySession> session = Kestrio::shared().startSurvey();
        if (!session)
            return QApplication::exit(1);
        screen = std::make_unique<Screen>(std::move(session));
        screen->show();
    });
    return QApplication::exec();
}
