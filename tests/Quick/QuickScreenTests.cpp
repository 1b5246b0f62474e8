#include "KestrioKit/Quick/Facade/MotionPreference.h"
#include "KestrioKit/Quick/Survey/SurveyViewController.h"
#include "KestrioKit/Quick/SurveyOverlay.h"
#include "tests/support/SurveyFixture.h"

#include <QMimeData>
#include <QPointingDevice>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto scaleAndText = R"([
    {"name":11,"type":"likert","props":{"message":"How was it?"}},
    {"name":12,"type":"open","props":{"message":"Why?"}}])";

/// A host that notes all input it receives, with a field that has the focus and a place of its own
/// for surveys.
constexpr auto hostSource = R"(
import QtQuick
import QtQuick.Controls.Basic
import KestrioKit

ApplicationWindow {
    property string received
    property alias popup: popup
    function note(what) { received += what + " " }
    width: 390; height: 700; visible: true
    Item {
        anchors.fill: parent
        TapHandler { onPressedChanged: note("tap") }
        PointHandler { onActiveChanged: note("point") }
        DragHandler { target: null; onActiveChanged: note("drag") }
        HoverHandler { onHoveredChanged: if (hovered) note("hover") }
        WheelHandler { onWheel: note("wheel") }
        PinchHandler { target: null; onActiveChanged: note("pinch") }
        DropArea { anchors.fill: parent; onEntered: note("drop") }
        MouseArea {
            anchors.fill: parent; acceptedButtons: Qt.AllButtons; hoverEnabled: true
            onPressed: note("press"); onPositionChanged: note("move")
        }
        MultiPointTouchArea {
            anchors.fill: parent; anchors.bottomMargin: 350; mouseEnabled: false
            onPressed: note("touch")
        }
        Shortcut { sequence: "Ctrl+S"; onActivated: note("shortcut") }
        TextField { objectName: "field"; focus: true; width: 100; onTextChanged: note("text") }
        Button { objectName: "button"; y: 40; text: "Button" }
        SurveyOverlay { objectName: "place"; y: 300; width: 390; height: 400 }
    }
    Popup { id: popup; y: 60; width: 100; height: 100; closePolicy: Popup.CloseOnPressOutside }
})";

} // namespace

class QuickScreenTest : public SurveyFixture {
protected:
    QuickScreenTest() {
        MotionPreference::shared().setReduced(true);
        engine->loadData(hostSource);
        window = qobject_cast<QQuickWindow *>(engine->rootObjects().value(0));
        window->requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    }
    void TearDown() override {
        engine.reset();
        SurveyFixture::TearDown();
        MotionPreference::shared().setReduced(false);
    }

    void present(QObject *host = nullptr) {
        hold(scaleAndText);
        core->presentSurvey(host ? host : window);
        finish();
    }
    Quick::SurveyViewController *survey() const {
        return window ? findItem<Quick::SurveyViewController>(*window->contentItem()) : nullptr;
    }
    template <typename Item>
    static Item *findItem(const QQuickItem &root, const QString &name = {}) {
        for (QQuickItem *const child : root.childItems()) {
            auto *const item = qobject_cast<Item *>(child);
            if (item && (name.isEmpty() || item->objectName() == name))
                return item;
            if (Item *const deeper = findItem<Item>(*child, name))
                return deeper;
        }
        return nullptr;
    }
    QQuickItem *item(const QString &name) const {
        return findItem<QQuickItem>(*window->contentItem(), name);
    }
    QString focused() const {
        return window->activeFocusItem() ? window->activeFocusItem()->objectName() : QString();
    }
    void click(const QString &name) {
        const QQuickItem *const clicked = item(name);
        ASSERT_TRUE(clicked) << qPrintable(name);
        QTest::mouseClick(window, Qt::LeftButton, {},
                          clicked->mapToScene({clicked->width() / 2, 10}).toPoint());
        finish();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window, key, modifiers);
        finish();
    }

    /// Uses every kind of input on the window, and returns what the host received of it.
    QString useEverything() {
        window->setProperty("received", QString());
        // At the card's edge, where there is no control.
        const QPoint onCard(150, 690);
        const QPoint away(60, 300);
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            QTest::mousePress(window, button, {}, onCard);
            QTest::mouseMove(window, onCard + QPoint(40, 0));
            QTest::mouseMove(window, onCard + QPoint(80, 0));
            QTest::mouseRelease(window, button, {}, onCard + QPoint(80, 0));
        }
        QTest::mouseMove(window, away);
        QTest::touchEvent(window, finger.get()).press(0, onCard).press(1, away);
        QTest::touchEvent(window, finger.get()).move(0, onCard * 0.9).move(1, away * 0.5);
        QTest::touchEvent(window, finger.get()).release(0, onCard * 0.9).release(1, away * 0.5);
        QWheelEvent wheel(away, away, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window, &wheel);
        const QMimeData data;
        QDragEnterEvent drag(away, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window, &drag);
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(window, &leave);
        key(Qt::Key_X);
        key(Qt::Key_S, Qt::ControlModifier);
        return window->property("received").toString();
    }
    /// Lets the two seconds pass for which a survey waits for its hidden window.
    void letTheWaitPass() {
        for (QTimer *const timer : survey()->findChildren<QTimer *>()) {
            if (timer->isActive() && timer->intervalAsDuration() == screenMetrics.absence) {
                QTimerEvent timeout(timer->timerId());
                QCoreApplication::sendEvent(timer, &timeout);
                return finish();
            }
        }
        FAIL();
    }

    std::unique_ptr<QQmlApplicationEngine> engine = std::make_unique<QQmlApplicationEngine>();
    QPointer<QQuickWindow> window;
    const std::unique_ptr<QPointingDevice> finger{QTest::createTouchDevice()};
};

TEST_F(QuickScreenTest, KeepsAllInputFromTheHostAndGivesTheFocusBack) {
    present();
    EXPECT_EQ(focused(), u"Option 1"_s);
    EXPECT_EQ(useEverything(), QString());
    item(u"button"_s)->forceActiveFocus();
    finish();
    EXPECT_EQ(focused(), u"Option 1"_s);
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Close button"_s);
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Option 1"_s);
    key(Qt::Key_Escape);
    EXPECT_FALSE(survey());
    EXPECT_EQ(focused(), u"button"_s);
    item(u"field"_s)->forceActiveFocus();
    const QString received = useEverything();
    for (const QString &kind : {u"press"_s, u"drag"_s, u"hover"_s, u"wheel"_s, u"drop"_s, u"text"_s,
                                u"shortcut"_s, u"touch"_s})
        EXPECT_TRUE(received.contains(kind)) << qPrintable(kind + u": "_s + received);
    EXPECT_EQ(history(), QStringList({u"closed 11"_s, u"seen"_s, u"seen 11"_s}));
}

TEST_F(QuickScreenTest, LeavesAnOpenPopupOfTheHostAlone) {
    auto *const popup = window->property("popup").value<QObject *>();
    QMetaObject::invokeMethod(popup, "open");
    present();
    click(u"Option 4"_s);
    EXPECT_TRUE(popup->property("visible").toBool());
    QTest::keyClick(window, Qt::Key_A);
    click(u"Open question button"_s);
    EXPECT_TRUE(waitFor([this] { return !survey(); }));
    EXPECT_EQ(responses(), QList<QStringList>({{u"11=4"_s, u"12=\"a\""_s}}));
}

TEST_F(QuickScreenTest, EndsWithItsWindowButNotForAShortAbsence) {
    present();
    window->hide();
    window->show();
    EXPECT_TRUE(survey());
    window->hide();
    letTheWaitPass();
    EXPECT_FALSE(survey());
    EXPECT_EQ(history(), QStringList({u"closed 11"_s, u"seen"_s, u"seen 11"_s}));
    window->show();
    const std::function<void()> ends[] = {
        [this] { delete window->findChild<QObject *>(u"place"_s); },
        [this] { engine.reset(); },
    };
    for (const auto &end : ends) {
        present(item(u"place"_s));
        EXPECT_TRUE(survey());
        end();
        finish();
        EXPECT_FALSE(survey());
    }
    EXPECT_EQ(history().count(u"closed 11"_s), 3);
}

TEST_F(QuickScreenTest, ShowsASurveyInAPlaceOfTheHostWithoutTakingTheWindow) {
    present(item(u"place"_s));
    EXPECT_EQ(focused(), u"field"_s);
    EXPECT_EQ(survey()->parentItem(), item(u"place"_s));
    key(Qt::Key_X);
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(window->property("received").toString().contains(u"text shortcut"_s));
    click(u"Option 2"_s);
    EXPECT_EQ(focused(), u"Open question prompt"_s);
    key(Qt::Key_Escape);
    EXPECT_FALSE(survey());
    EXPECT_EQ(responses(), QList<QStringList>({{u"11=2"_s}}));
}

TEST_F(QuickScreenTest, IsTheOnlyChildOfItsWindowForAssistiveTechnology) {
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
    const auto children = [this] {
        QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(window);
        QStringList names;
        for (int index = 0; index < interface->childCount(); ++index)
            names.append(interface->child(index)->object()->objectName());
        return names;
    };
    const QStringList before = children();
    present();
    EXPECT_EQ(children(), QStringList(u"Kestrio Survey"_s));
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(item(u"field"_s))->state().invisible);
    key(Qt::Key_Escape);
    EXPECT_EQ(children(), before);
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(item(u"field"_s))->state().invisible);
}

} // namespace KestrioKit
