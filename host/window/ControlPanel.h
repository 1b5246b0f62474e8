#pragma once

#include <QWidget>

#include <functional>

class QGridLayout;
class QLineEdit;
class QPlainTextEdit;

/// Offers a control for each operation of `Kestrio` and lists the results.
class ControlPanel final : public QWidget {
    Q_OBJECT

public:
    /// Surveys are presented from `presenter`, which must outlive the panel.
    explicit ControlPanel(QWidget *presenter);

    /// Tracks an event and presents the survey that it triggers.
    void askAndPresent(const QString &event);

private:
    /// A button's title and what a click does.
    struct Action {
        QString title;
        std::function<void()> run;
    };

    QWidget *makeVisitorCard();
    QWidget *makeEventCard();
    QWidget *makeSurveyCard();
    QWidget *makeLogCard();
    void addAttributeRow(QGridLayout &grid);
    /// Adds a row to a card: its label, its fields and the buttons of its actions.
    void addRow(QGridLayout &grid, const QString &label, const QList<QLineEdit *> &fields,
                const QList<Action> &actions);
    /// Tracks an event with a handler and logs the state. Calls `whenReady` if a survey is ready.
    void ask(const QString &event, const std::function<void()> &whenReady);
    /// Appends a line to the list of results.
    void log(const QString &line);

    QWidget *m_presenter;
    QPlainTextEdit *m_log = nullptr;
};
