#pragma once

#include <QWidget>

#include <functional>

class QGridLayout;
class QLineEdit;
class QPlainTextEdit;

/// Calls the operations of `Kestrio`, and lists what came of them.
class ControlPanel final : public QWidget {
    Q_OBJECT

public:
    /// Surveys are presented from `presenter`, which outlives the panel.
    explicit ControlPanel(QWidget *presenter);

    /// Tracks an event, and shows the survey that it is answered with.
    void askAndPresent(const QString &event);

private:
    /// A button with what it does.
    struct Action {
        QString title;
        std::function<void()> run;
    };

    QWidget *makeVisitorCard();
    QWidget *makeEventCard();
    QWidget *makeSurveyCard();
    QWidget *makeLogCard();
    void addAttributeRow(QGridLayout &grid);
    /// A row of the card: what it is about, its fields, and what can be done with them.
    void addRow(QGridLayout &grid, const QString &label, const QList<QLineEdit *> &fields,
                const QList<Action> &actions);
    void ask(const QString &event, const std::function<void()> &whenReady);
    void log(const QString &line);

    QWidget *m_presenter;
    QPlainTextEdit *m_log = nullptr;
};
