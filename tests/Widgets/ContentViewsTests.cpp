#include "KestrioKit/Core/Session/SurveyForms.h"
#include "KestrioKit/Widgets/Controls/ActionButton.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Questions/QuestionContentViews.h"
#include "tests/Widgets/ViewTest.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QClipboard>
#include <QMetaEnum>
#include <QPushButton>
#include <QTextEdit>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr int width = 358;

/// The page's question as each type of question shows it.
SurveyQuestion question(QuestionType::Kind kind) {
    Question question;
    question.type.kind = kind;
    question.details.labels = Labels{u"Never"_s, u"Always, and "_s + u"more of it "_s.repeated(9)};
    question.details.options = QList<Option>{{12, u"Yes"_s, u"yes"_s},
                                             {{}, u"Nameless"_s, u"none"_s},
                                             {14, u"long "_s.repeated(60), u"long"_s},
                                             {15, QString(), u"empty"_s}};
    return questionsToShow({question}, AnyLanguageBundle(u"en"_s)).first();
}

} // namespace

class ContentViews : public ViewTest {
protected:
    QuestionContentContainer *make(QuestionType::Kind kind) {
        auto *const view =
            makeContentView(question(kind), textsToShow(AnyLanguageBundle(u"en"_s)), colors);
        QObject::connect(view, &QuestionContentContainer::answered, view,
                         [this](const QVariant &answer) { answers.append(answer); });
        show(view, width);
        view->firstControl()->setFocus(Qt::TabFocusReason);
        return view;
    }

    QWidget *control(const QString &identifier) const {
        return window.findChild<QWidget *>(identifier);
    }
    void click(const QString &identifier) {
        QWidget *const view = control(identifier);
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                          view->mapTo(&window, view->rect().center()));
    }
    void keys(const QList<Qt::Key> &list) {
        for (const Qt::Key key : list)
            QTest::keyClick(window.windowHandle(), key);
    }
    QString focused() const { return window.focusWidget()->objectName(); }
    QRect frame(const QWidget *view) const {
        return {view->mapTo(&window, QPoint()), view->size()};
    }
    QTextEdit *makeText() {
        return make(QuestionType::open)->findChild<QTextEdit *>(u"Open question prompt"_s);
    }

    QVariantList answers;
};

TEST_F(ContentViews, AreRegisteredForEveryKnownType) {
    const auto types = QMetaEnum::fromType<SurveyQuestion::Type>();
    for (int index = 0; index < types.keyCount(); ++index) {
        SurveyQuestion asked;
        asked.type = SurveyQuestion::Type(types.value(index));
        const std::unique_ptr<QWidget> view(makeContentView(asked, {}, colors));
        EXPECT_EQ(bool(view), asked.type != SurveyQuestion::Type::Other) << types.key(index);
    }
}

TEST_F(ContentViews, ScalesAnswerWithTheirNumbersAndAreOneStopForTab) {
    const auto *const likert = make(QuestionType::likert);
    QPushButton after(&window);
    after.lower();
    after.show();
    keys({Qt::Key_Right, Qt::Key_Right, Qt::Key_Tab});
    EXPECT_TRUE(after.hasFocus());
    QTest::keyClick(&window, Qt::Key_Backtab);
    EXPECT_EQ(focused(), u"Option 3"_s);
    click(u"Option 1"_s);
    click(u"Option 5"_s);
    keys({Qt::Key_Home, Qt::Key_Left, Qt::Key_Right, Qt::Key_Down, Qt::Key_Up, Qt::Key_Space});
    delete likert;
    make(QuestionType::nps);
    click(u"Option 0"_s);
    keys({Qt::Key_End, Qt::Key_Right, Qt::Key_Return});
    for (const int number : {1, 5, 2, 0, 10})
        EXPECT_EQ(answers.takeFirst(), number);
}

TEST_F(ContentViews, ChoicesAnswerWithIdAndValue) {
    make(QuestionType::multipleChoice);
    click(u"Multi-choice option: Nameless"_s);
    click(u"Multi-choice option: Yes"_s);
    keys({Qt::Key_End, Qt::Key_Enter});
    EXPECT_EQ(answers,
              (QVariantList{QVariantMap{{u"12"_s, u"yes"_s}}, QVariantMap{{u"15"_s, u"empty"_s}}}));
}

TEST_F(ContentViews, CheckBoxesAnswerWithTheSelectedIds) {
    make(QuestionType::multiSelect);
    click(u"Multi-select submit button"_s);
    click(u"Multi-select option: Yes"_s);
    click(u"Multi-select option: Nameless"_s);
    keys({Qt::Key_Tab, Qt::Key_Space, Qt::Key_Up, Qt::Key_Up});
    EXPECT_EQ(focused(), u"Multi-select option: Yes-selected"_s);
    keys({Qt::Key_Tab, Qt::Key_Return, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab,
          Qt::Key_Return});
    EXPECT_EQ(answers,
              (QVariantList{QVariantMap(), QVariantMap{{u"12"_s, true}, {u"14"_s, true}}}));
}

TEST_F(ContentViews, TextIsAnsweredAsTyped) {
    auto *const field = makeText();
    const auto *const placeholder = field->findChild<Label *>();
    click(u"Open question button"_s);
    EXPECT_EQ(focused(), u"Open question button"_s);
    click(u"Open question prompt"_s);
    QInputMethodEvent composing(u"ni"_s, {});
    QCoreApplication::sendEvent(field, &composing);
    EXPECT_FALSE(placeholder->isVisible());
    QInputMethodEvent composed;
    QCoreApplication::sendEvent(field, &composed);
    EXPECT_TRUE(placeholder->isVisible());
    composed.setCommitString(u"你"_s);
    QCoreApplication::sendEvent(field, &composed);
    QGuiApplication::clipboard()->setText(u"\u00A0b"_s);
    field->paste();
    keys({Qt::Key_Return, Qt::Key_X, Qt::Key_Tab, Qt::Key_Space});
    field->selectAll();
    field->cut();
    EXPECT_TRUE(placeholder->isVisible());
    EXPECT_EQ(answers, QVariantList({QString(), u"你\u00A0b\nx"_s}));
    field->setFocus();
    QTest::keyClicks(field, u"WWWWWWWW"_s);
    EXPECT_EQ(colorAt(frame(field->viewport()).x() + field->cursorRect().x(), 25), theme);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(colorAt(14, 13), theme);
}

TEST_F(ContentViews, TextFieldUndoesWhatWasTypedAlone) {
    auto *const field = makeText();
    const qreal margin = field->document()->documentMargin();
    QTest::keyClick(field, Qt::Key_X);
    for (int times = 0; times < 3; ++times)
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field->document()->documentMargin(), margin);
}

// A screen reader asks about a control as soon as it hears of it.
TEST_F(ContentViews, ScalesAndChoicesAreRadioGroupsForAScreenReader) {
    QAccessible::installUpdateHandler(
        [](QAccessibleEvent *event) { event->accessibleInterface(); });
    QAccessible::setActive(true);
    make(QuestionType::likert);
    make(QuestionType::multipleChoice);
    const std::pair<QString, QString> cases[] = {{u"Option 1"_s, u"Never, 1 of 5"_s},
                                                 {u"Option 2"_s, u"2 of 5"_s},
                                                 {u"Multi-choice option: Yes"_s, u"1 of 4"_s}};
    for (const auto &[identifier, description] : cases) {
        auto *const interface = QAccessible::queryAccessibleInterface(control(identifier));
        EXPECT_EQ(interface->role(), QAccessible::RadioButton);
        EXPECT_TRUE(interface->state().checkable && !interface->state().checked);
        EXPECT_EQ(interface->text(QAccessible::Description), description);
        interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    EXPECT_TRUE(QTest::qWaitFor([this] { return answers.size() == 3; }));
    QAccessible::setActive(false);
    QAccessible::installUpdateHandler(nullptr);
}

TEST_F(ContentViews, ScalesShareTheRowEquallyAtEachWidth) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        window.setLayoutDirection(direction);
        auto *const view = make(QuestionType::nps);
        for (const int row : {288, 358, 467}) {
            show(view, row);
            int left = 0;
            for (int place = 0; place < 11; ++place) {
                const int position = direction == Qt::LeftToRight ? place : 10 - place;
                const QRect button = frame(control(u"Option %1"_s.arg(position)));
                EXPECT_EQ(button.x(), left);
                EXPECT_NEAR(button.width(), (row - 10) / 11.0, 1);
                left = button.right() + 2;
                EXPECT_TRUE(place == 10 || colorAt(left - 0.5, 25) == theme);
            }
            EXPECT_EQ(left, row + 1);
            const auto labels = view->findChildren<Label *>();
            EXPECT_EQ(frame(labels[0]).y(), 58);
            EXPECT_FALSE(frame(labels[0]).intersects(frame(labels[1])));
            EXPECT_EQ(labels[0]->width(), labels[0]->naturalWidth());
            EXPECT_EQ(view->height(), 58 + labels[1]->heightForWidth(labels[1]->width()));
        }
        delete view;
    }
}

TEST_F(ContentViews, StackTheirControlsAtTheLeadingEdge) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        window.setLayoutDirection(direction);
        const QList<QWidget *> views{make(QuestionType::multiSelect),
                                     make(QuestionType::multipleChoice)};
        for (const QWidget *const view : views) {
            int bottom = -8;
            for (const auto *const button : view->findChildren<QAbstractButton *>()) {
                const bool isAction = qobject_cast<const ActionButton *>(button);
                const QRect place = frame(button);
                EXPECT_EQ(place.y(), bottom + (isAction ? 16 : 8));
                EXPECT_EQ(place.height(), button->heightForWidth(place.width()));
                EXPECT_EQ(direction == Qt::LeftToRight ? place.x() : width - place.right() - 1, 0);
                EXPECT_EQ(place.width(), isAction ? button->sizeHint().width() : width);
                bottom = place.bottom() + 1;
            }
            EXPECT_EQ(view->height(), bottom);
        }
    }
}

} // namespace KestrioKit
