#include "host/window/ControlPanel.h"

#include "host/window/Card.h"
#include "host/window/DemoStyle.h"

#include "KestrioKit/Kestrio.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTime>

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 12;
constexpr int gap = 6;
constexpr int leastFieldWidth = 50;
constexpr int leastLogHeight = 80;
constexpr int mostLogLines = 500;

QString nameOf(SurveyState state) {
    switch (state) {
    case SurveyState::noSurvey:
        return u"no survey"_s;
    case SurveyState::surveyReady:
        return u"a survey is ready"_s;
    case SurveyState::disabled:
        return u"the library is disabled"_s;
    }
    Q_UNREACHABLE();
}

QLineEdit *makeField(const QString &name, const QString &text = {}) {
    auto *const field = named(new QLineEdit(text), name);
    field->setPlaceholderText(name);
    field->setMinimumWidth(leastFieldWidth);
    return field;
}

QGridLayout *makeGrid(Card &card) {
    auto *const grid = new QGridLayout;
    grid->setSpacing(gap);
    grid->setColumnStretch(1, 1);
    card.body().addLayout(grid);
    return grid;
}

} // namespace

ControlPanel::ControlPanel(QWidget *presenter) : m_presenter(presenter) {
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(spacing);
    column->addWidget(makeVisitorCard());
    column->addWidget(makeEventCard());
    column->addWidget(makeSurveyCard());
    column->addWidget(makeLogCard(), 1);
}

QWidget *ControlPanel::makeVisitorCard() {
    auto *const card = new Card(u"Visitor"_s);
    QGridLayout *const grid = makeGrid(*card);
    Kestrio &kestrio = Kestrio::shared();
    auto *const environment = makeField(u"Environment"_s, u"demo-shop"_s);
    addRow(*grid, u"Environment"_s, {environment}, {{u"Configure"_s, [&, environment] {
                                                         kestrio.configure(environment->text());
                                                     }}});
    auto *const locale = makeField(u"Language"_s);
    addRow(*grid, u"Language"_s, {locale}, {{u"Set language"_s, [&, locale] {
                                                 kestrio.setLocale(locale->text());
                                             }}});
    auto *const user = makeField(u"User identifier"_s, u"user-7"_s);
    addRow(*grid, u"User"_s, {user},
           {{u"Set user"_s,
             [&, user] {
                 kestrio.setUserIdentifier(user->text());
             }},
            {u"Log out"_s, [&] {
                 kestrio.logout();
             }}});
    auto *const email = makeField(u"E-mail"_s, u"ada@example.com"_s);
    addRow(*grid, u"E-mail"_s, {email}, {{u"Set e-mail"_s, [&, email] {
                                              kestrio.setEmailAddress(email->text());
                                          }}});
    addAttributeRow(*grid);
    auto *const network = named(new QCheckBox(u"Network access"_s), u"Network access"_s);
    network->setChecked(!kestrio.disableNetworkAccess());
    connect(network, &QCheckBox::toggled, this, [&kestrio, this](bool isOn) {
        log(isOn ? u"Network on"_s : u"Network off"_s);
        kestrio.setDisableNetworkAccess(!isOn);
    });
    card->body().addWidget(network);
    return card;
}

void ControlPanel::addAttributeRow(QGridLayout &grid) {
    auto *const key = makeField(u"Key"_s, u"plan"_s);
    auto *const value = makeField(u"Value"_s, u"pro"_s);
    const auto set = [key, value] {
        Kestrio::shared().setVisitorAttribute(key->text(), value->text());
    };
    const auto remove = [key] {
        Kestrio::shared().removeVisitorAttributes({key->text()});
    };
    addRow(grid, u"Attribute"_s, {key, value}, {{u"Set"_s, set}, {u"Remove"_s, remove}});
}

QWidget *ControlPanel::makeEventCard() {
    auto *const card = new Card(u"Events"_s);
    auto *const event = makeField(u"Event"_s, u"Checkout Finished"_s);
    addRow(*makeGrid(*card), u"Event"_s, {event},
           {{u"Track"_s,
             [event] {
                 Kestrio::shared().track(event->text());
             }},
            {u"Track and ask"_s, [this, event] {
                 ask(event->text(), {});
             }}});
    return card;
}

QWidget *ControlPanel::makeSurveyCard() {
    auto *const card = new Card(u"Surveys"_s);
    auto *const number = makeField(u"Survey number"_s, u"1"_s);
    number->setValidator(new QIntValidator(number));
    const auto presentById = [this, number] {
        Kestrio::shared().presentSurvey(number->text().toLongLong(), m_presenter,
                                        [panel = QPointer(this)] {
                                            if (panel)
                                                panel->log(u"The survey has come"_s);
                                        });
    };
    addRow(*makeGrid(*card), u"Number"_s, {number}, {{u"Fetch and show"_s, presentById}});
    auto *const row = makeGrid(*card);
    addRow(*row, {}, {},
           {{u"Show the held one"_s,
             [this] {
                 Kestrio::shared().presentSurvey(m_presenter);
             }},
            {u"Show a sample"_s, [this] {
                 Kestrio::shared().presentDebugSurvey(m_presenter);
             }}});
    return card;
}

QWidget *ControlPanel::makeLogCard() {
    auto *const card = new Card(u"What happened"_s);
    m_log = named(new QPlainTextEdit, u"What happened"_s);
    m_log->setReadOnly(true);
    m_log->setTabChangesFocus(true);
    m_log->setMaximumBlockCount(mostLogLines);
    m_log->setMinimumHeight(leastLogHeight);
    m_log->setPlaceholderText(u"Configure the library first."_s);
    card->body().addWidget(m_log, 1);
    return card;
}

void ControlPanel::addRow(QGridLayout &grid, const QString &label, const QList<QLineEdit *> &fields,
                          const QList<Action> &actions) {
    const int row = grid.rowCount();
    if (!label.isEmpty())
        grid.addWidget(inLook(new QLabel(label), Look::quiet), row, 0);
    auto *const line = new QHBoxLayout;
    line->setSpacing(gap);
    for (QLineEdit *const field : fields)
        line->addWidget(field, 1);
    for (const Action &action : actions) {
        auto *const button = named(new QPushButton(action.title), action.title);
        connect(button, &QPushButton::clicked, this, [this, fields, action] {
            QStringList words{action.title};
            for (const QLineEdit *const field : fields)
                words.append(field->text());
            log(words.join(u' '));
            action.run();
        });
        line->addWidget(button, fields.isEmpty() ? 1 : 0);
    }
    grid.addLayout(line, row, label.isEmpty() ? 0 : 1, 1, label.isEmpty() ? 2 : 1);
}

void ControlPanel::askAndPresent(const QString &event) {
    log(u"An order was placed"_s);
    ask(event, [this] { Kestrio::shared().presentSurvey(m_presenter); });
}

void ControlPanel::ask(const QString &event, const std::function<void()> &whenReady) {
    Kestrio::shared().track(event, [panel = QPointer(this), event, whenReady](SurveyState state) {
        if (!panel)
            return;
        panel->log(u"%1: %2"_s.arg(event, nameOf(state)));
        if (state == SurveyState::surveyReady && whenReady)
            whenReady();
    });
}

void ControlPanel::log(const QString &line) {
    m_log->appendPlainText(QTime::currentTime().toString(u"HH:mm:ss  "_s) + line);
}
