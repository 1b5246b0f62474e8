#include "tests/Widgets/SurveyScreenTest.h"

#include "KestrioKit/Core/Facade/DebugSurvey.h"
#include "KestrioKit/Core/Platform/LanguageBundle.h"
#include "KestrioKit/Core/Session/KeyboardObserver.h"
#include "KestrioKit/Widgets/Controls/ActionButton.h"
#include "KestrioKit/Widgets/Overlay/HostPicture.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QShortcut>
#include <QTabWidget>
#include <QTextEdit>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto scaleAndText = R"([
    {"name":11,"type":"likert","props":{"message":"How was it?"}},
    {"name":12,"type":"open","props":{"message":"Why?"}}])";

/// The offscreen platform cannot do all that Qt asks of it for native windows, and says so.
auto allowingOffscreenWarnings() {
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) {
            EXPECT_TRUE(message.startsWith(u"This plugin does not"_s)) << qPrintable(message);
        });
    return qScopeGuard([before] { qInstallMessageHandler(before); });
}

} // namespace

using SurveyPresentation = SurveyScreenTest;

TEST_F(SurveyPresentation, KeepsInputFromTheHostAndGivesTheFocusBack) {
    const QShortcut shortcut(QKeySequence(u"Ctrl+S"_s), &window);
    const QSignalSpy shortcuts(&shortcut, &QShortcut::activated);
    present(scaleAndText);
    EXPECT_EQ(focused(), u"Option 1"_s);
    key(Qt::Key_S, Qt::ControlModifier);
    key(Qt::Key_X);
    click(frame(&button).center());
    button.setFocus();
    finish();
    EXPECT_EQ(focused(), u"Option 1"_s);
    for (int times = 0; times < 4; ++times) {
        key(Qt::Key_Tab);
        EXPECT_TRUE(survey()->isAncestorOf(window.focusWidget()));
    }
    EXPECT_EQ(shortcuts.count() + presses.count(), 0);
    EXPECT_EQ(field.text(), QString());
    key(Qt::Key_Escape);
    EXPECT_EQ(window.focusWidget(), &button);
    key(Qt::Key_S, Qt::ControlModifier);
    click(frame(&button).center());
    EXPECT_EQ(shortcuts.count(), 1);
    EXPECT_EQ(presses.count(), 1);
}

TEST_F(SurveyPresentation, KeepsTheKeysFromAHostThatInsistsOnTheFocus) {
    present(scaleAndText);
    QMdiArea area(&window);
    area.show();
    area.addSubWindow(new QTextEdit)->show();
    finish();
    EXPECT_EQ(focused(), u"Option 1"_s);
    // Another window of the host's is its own affair.
    QDialog dialog(&window);
    QLineEdit text(&dialog);
    dialog.show();
    dialog.activateWindow();
    finish();
    EXPECT_TRUE(text.hasFocus());
    dialog.hide();
    window.activateWindow();
    const QSignalSpy changes(qApp, &QApplication::focusChanged);
    QObject::connect(qApp, &QApplication::focusChanged, &text, [this](QWidget *, QWidget *now) {
        if (now != &field)
            QTimer::singleShot(0, &field, [this] { field.setFocus(); });
    });
    field.setFocus();
    for (int turns = 0; turns < 50; ++turns)
        finish();
    EXPECT_LT(changes.count(), 20);
    key(Qt::Key_X);
    key(Qt::Key_Space);
    EXPECT_EQ(field.text(), QString());
    key(Qt::Key_Escape);
    EXPECT_EQ(history(), QStringList({u"closed 12"_s, u"seen"_s, u"seen 11"_s, u"seen 12"_s}));
}

TEST_F(SurveyPresentation, IsSeenOnceTheWindowShowsItAndContinuesWhenItIsShownAgain) {
    const auto guard = allowingOffscreenWarnings();
    window.showMinimized();
    present(scaleAndText);
    EXPECT_EQ(history(), QStringList());
    window.showNormal();
    EXPECT_EQ(history(), QStringList({u"seen"_s, u"seen 11"_s}));
    QTabWidget tabs;
    tabs.resize(600, 800);
    tabs.show();
    const std::function<void()> returns[] = {
        [this] { window.show(); },
        [this] { window.setWindowFlag(Qt::WindowStaysOnTopHint), window.show(); },
        [&] { tabs.addTab(&window, u"Tab"_s); },
    };
    for (const auto &comeBack : returns) {
        window.hide();
        finish();
        comeBack();
        finish();
        ASSERT_NE(survey(), nullptr);
        EXPECT_EQ(survey()->parentWidget(), window.window());
        EXPECT_EQ(survey()->geometry(), window.window()->rect());
        EXPECT_TRUE(survey()->isVisible());
    }
    tabs.activateWindow();
    key(Qt::Key_Space);
    EXPECT_EQ(history(), QStringList({u"seen"_s, u"seen 11"_s, u"seen 12"_s}));
    window.setParent(nullptr);
    key(Qt::Key_Escape);
}

TEST_F(SurveyPresentation, SurvivesTheEndOfItsWindowDuringTheWait) {
    QAccessible::setActive(true);
    auto *const host = new QWidget;
    auto *const child = new QPushButton(host);
    host->show();
    present(scaleAndText, "en", host);
    QAccessible::queryAccessibleInterface(child);
    host->hide();
    delete host;
    EXPECT_EQ(survey(), nullptr);
    EXPECT_EQ(history(), QStringList({u"closed 11"_s, u"seen"_s, u"seen 11"_s}));
    QAccessible::setActive(false);
}

TEST_F(SurveyPresentation, CoversEmbeddedWindowsWithoutMakingTheHostNative) {
    const auto guard = allowingOffscreenWarnings();
    for (const bool isThereBefore : {true, false}) {
        std::unique_ptr<QWidget> container;
        const auto embed = [&] {
            container.reset(QWidget::createWindowContainer(new QWindow, &window));
            container->setGeometry(0, 400, 390, 300);
            container->show();
            finish();
        };
        if (isThereBefore)
            embed();
        present(scaleAndText);
        EXPECT_EQ(survey()->testAttribute(Qt::WA_NativeWindow), isThereBefore);
        if (!isThereBefore)
            embed();
        ASSERT_NE(survey()->windowHandle(), nullptr);
        EXPECT_TRUE(survey()->windowHandle()->isVisible());
        EXPECT_EQ(window.windowHandle()->children().last(), survey()->windowHandle());
        key(Qt::Key_Escape);
        EXPECT_EQ(button.windowHandle(), nullptr);
    }
}

TEST_F(SurveyPresentation, PicturesTheHostAsItIsWithoutPaintingItAgain) {
    settle();
    button.setText(u"Not painted yet"_s);
    const EventCounter paints(field, QEvent::Paint);
    QWidget cover(&window);
    const auto picture = [&cover] {
        return pictureBehind(&cover, {}).toImage().convertToFormat(QImage::Format_RGB32);
    };
    const QImage shown = picture();
    EXPECT_EQ(paints.count, 0);
    cover.show();
    EXPECT_EQ(picture(), shown);
    EXPECT_GT(paints.count, 0);
}

TEST_F(SurveyPresentation, KeepsATransparentHostTransparent) {
    QWidget host;
    QWidget plate(&host);
    plate.setGeometry(100, 0, 300, 700);
    plate.setBackgroundRole(QPalette::Base);
    plate.setAutoFillBackground(true);
    host.setAttribute(Qt::WA_TranslucentBackground);
    host.setWindowFlag(Qt::FramelessWindowHint);
    host.resize(window.size());
    host.show();
    present(scaleAndText, "en", &host);
    for (const QSize size : {host.size(), QSize(500, 500), QSize(700, 500)}) {
        host.resize(size);
        finish();
        const QImage picture = host.grab().toImage();
        EXPECT_EQ(picture.pixelColor(1, 1).alpha(), 0);
        EXPECT_EQ(picture.pixelColor(1, size.height() - 2).alpha(), 0);
        EXPECT_EQ(picture.pixelColor(size.width() / 2, 20), QColor(102, 102, 102));
        EXPECT_EQ(picture.pixelColor(size.width() / 2, size.height() - 4), QColor(Qt::white));
    }
}

TEST_F(SurveyPresentation, HidesTheHostFromAssistiveTechnologyMeanwhile) {
    const auto press = [](QAccessibleInterface *interface) {
        if (auto *const actions = interface ? interface->actionInterface() : nullptr)
            actions->doAction(QAccessibleActionInterface::pressAction());
    };
    QAccessibleInterface *const before = QAccessible::queryAccessibleInterface(&button);
    const QAccessible::Id id = QAccessible::uniqueId(before);
    present(scaleAndText);
    EXPECT_EQ(QAccessible::accessibleInterface(id), before);
    // A screen reader is started.
    QAccessible::setActive(true);
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    QAccessibleInterface *const covered = QAccessible::queryAccessibleInterface(&button);
    press(covered);
    EXPECT_TRUE(covered->state().invisible);
    EXPECT_EQ(presses.count(), 0);
    press(QAccessible::queryAccessibleInterface(control(u"Option 3"_s)));
    EXPECT_TRUE(waitFor([this] { return focused() == u"Open question prompt"_s; }));
    key(Qt::Key_Escape);
    press(QAccessible::queryAccessibleInterface(&button));
    EXPECT_TRUE(waitFor([this] { return presses.count() == 1; }));
    present(scaleAndText);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&window)->childCount(), 1);
    QAccessible::setActive(false);
}

TEST_F(SurveyPresentation, ThanksForASecondAndGoes) {
    present(R"([{"name":11,"type":"likert","props":{"message":"How was it?"}}])");
    QElapsedTimer sinceTheAnswer;
    sinceTheAnswer.start();
    click(u"Option 5"_s);
    key(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([this] { return !survey(); }));
    EXPECT_GE(sinceTheAnswer.elapsed(), 990);
    EXPECT_EQ(history(), QStringList({u"seen"_s, u"seen 11"_s}));
    EXPECT_EQ(responses(), QList<QStringList>({{u"11=5"_s}}));
}

TEST_F(SurveyPresentation, SubmitsOnceHoweverItEnds) {
    // Under the part that a finger taps.
    button.setGeometry(0, 0, 50, 50);
    const std::function<void()> endings[] = {
        [this] { tap(QPoint(5, 5)); },
        [this] { window.close(), letTheWaitPass(); },
        [this] {
            window.hide();
            Q_EMIT qApp->aboutToQuit({});
            letTheWaitPass();
        },
        [this] { delete survey(); },
        [this] { click(u"Close button"_s); },
        [this] { click(QPoint(5, 5)); },
        [this] {
            Q_EMIT qApp->aboutToQuit({});
            key(Qt::Key_Escape);
        },
    };
    for (qsizetype count = 1; const auto &end : endings) {
        window.show();
        present(scaleAndText);
        click(u"Option 2"_s);
        end();
        EXPECT_EQ(survey(), nullptr);
        EXPECT_EQ(responses().size(), count);
        EXPECT_EQ(history().count(u"closed 12"_s), count++);
        EXPECT_EQ(core->survey(), std::nullopt);
    }
    EXPECT_EQ(presses.count(), 0);
}

TEST_F(SurveyPresentation, IsClosedByATapOnTheDimmingAlone) {
    present(R"([{"name":11,"type":"likert","props":{"message":"How was it?"}}])");
    const int top = frame(u"Kestrio Survey"_s).top();
    const int drags[][3] = {{50, 50, 550}, {50, 300, 50}, {top - 2, top, top + 3}, {50, 52, 53}};
    for (const auto &[from, over, to] : drags) {
        ASSERT_NE(survey(), nullptr) << to;
        QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, from));
        QTest::mouseMove(window.windowHandle(), QPoint(50, over));
        QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, to));
        finish();
    }
    EXPECT_EQ(survey(), nullptr);
}

TEST_F(SurveyPresentation, KeepsGesturesFromTheHost) {
    window.grabGesture(Qt::TapGesture);
    EventCounter gestures(window, QEvent::Gesture);
    tap({200, 200});
    EXPECT_GT(std::exchange(gestures.count, 0), 0);
    present(scaleAndText);
    tap(frame(u"Option 3"_s).center());
    EXPECT_EQ(focused(), u"Open question prompt"_s);
    tap({5, 5});
    EXPECT_EQ(survey(), nullptr);
    EXPECT_EQ(gestures.count, 0);
}

TEST_F(SurveyPresentation, SaysWhyItCannotShowASurvey) {
    QWidget hidden;
    testing::internal::CaptureStdout();
    core->presentSurvey(&window);
    core->presentDebugSurvey(nullptr);
    core->presentDebugSurvey(&hidden);
    EXPECT_EQ(survey(), nullptr);
    core->presentDebugSurvey(&field);
    core->presentDebugSurvey(&window);
    EXPECT_EQ(survey()->parentWidget(), &window);
    const QString printed = QString::fromStdString(testing::internal::GetCapturedStdout());
    for (const QString &reason : {u"No survey"_s, u"no widget"_s, u"not shown"_s, u"Another"_s})
        EXPECT_EQ(printed.count(reason), 1) << qPrintable(reason);
    finish();
    EXPECT_EQ(bodies("POST /1/errors").size(), 0);
}

TEST_F(SurveyPresentation, KeepsItsLanguageWhenAnotherSurveyArrives) {
    present(scaleAndText, "de");
    answer("POST /events",
           {200, QByteArray(R"({"vid":1,"locale":"fr","questions":)") + scaleAndText + "}"});
    core->track(u"Other"_s, [](SurveyState) {});
    finish();
    click(u"Option 5"_s);
    EXPECT_EQ(view<ActionButton>()->text(),
              AnyLanguageBundle(u"de"_s).localizedString(u"Finish"_s));
}

TEST_F(SurveyPresentation, FetchesASurveyByItsNumber) {
    answer("GET surveyid=9&vid=0", {404, "{}"});
    answer("GET surveyid=8&vid=0",
           {200, QByteArray(R"({"vid":1,"surveyId":7,"questions":)") + scaleAndText + "}"});
    QList<int> fetched;
    for (const int number : {9, 8}) {
        core->presentSurvey(number, &window,
                            [&, number] { fetched.append(survey() ? 0 : number); });
        finish();
    }
    EXPECT_EQ(fetched, QList<int>{8});
    ASSERT_NE(survey(), nullptr);
    // Of a survey without a response group nothing is reported.
    click(u"Option 4"_s);
    key(Qt::Key_Escape);
    EXPECT_EQ(history(), QStringList());
    EXPECT_EQ(responses(), QList<QStringList>());
}

} // namespace KestrioKit
