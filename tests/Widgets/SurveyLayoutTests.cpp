#include "tests/Widgets/SurveyScreenTest.h"

#include "KestrioKit/Widgets/Controls/CloseButton.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Controls/PageControl.h"
#include "KestrioKit/Widgets/Controls/ScrollView.h"
#include "KestrioKit/Widgets/Overlay/BackgroundView.h"
#include "KestrioKit/Widgets/Survey/QuestionView.h"
#include "KestrioKit/Widgets/Survey/SurveyView.h"

#include <QApplication>
#include <QScroller>
#include <QWindow>

#include <private/qinputmethod_p.h>
#include <private/qwindow_p.h>
#include <qpa/qplatforminputcontext.h>
#include <qpa/qplatformwindow.h>
#include <qpa/qwindowsysteminterface.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto shortQuestion = R"([{"name":11,"type":"likert","props":{"message":"How?"}}])";

/// A question of many lines, and sixty options.
QByteArray longQuestion() {
    return R"([{"name":11,"type":"multiplechoice","props":{"message":")" +
           QByteArray("words and more ").repeated(130) + R"(","options":[)" +
           QByteArray(R"({"id":1,"label":"First","value":"v"},)").repeated(59) +
           R"({"id":2,"label":"Last","value":"v"}]}}])";
}

/// An on-screen keyboard at the bottom of the window. As on Wayland without a seat, it must not be
/// used while no window has the focus.
class Keyboard final : public QPlatformInputContext {
public:
    Keyboard() {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this;
        emitKeyboardRectChanged();
        emitInputPanelVisibleChanged();
    }
    ~Keyboard() override {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr;
    }

    bool isInputPanelVisible() const override {
        EXPECT_TRUE(QGuiApplication::focusWindow());
        return m_isVisible;
    }
    QRectF keyboardRect() const override {
        return isInputPanelVisible() ? QRectF(0, 400, 390, 300) : QRectF();
    }
    void commit() override { EXPECT_TRUE(QGuiApplication::focusWindow()); }
    void hideInputPanel() override {
        commit();
        m_isVisible = false;
        emitInputPanelVisibleChanged();
    }

private:
    bool m_isVisible = true;
};

/// A host's style that leaves nothing as it is.
class RudeStyle final : public StillStyle {
public:
    void polish(QWidget *widget) override {
        StillStyle::polish(widget);
        if (!widget->isWindow())
            widget->setMinimumSize(90, 90);
    }
};

/// A screen with a notch above and a bar below, for as long as it lives.
class NotchedScreen final : public QPlatformWindow {
public:
    explicit NotchedScreen(QWindow *window)
        : QPlatformWindow(window),
          m_private(qt_window_private(window)),
          m_own(std::exchange(m_private->platformWindow, this)) {
        QWindowSystemInterface::handleSafeAreaMarginsChanged(window);
        QCoreApplication::processEvents();
    }
    ~NotchedScreen() override { m_private->platformWindow = m_own; }

    QMargins safeAreaMargins() const override { return {0, 40, 0, 20}; }

private:
    QWindowPrivate *m_private;
    QPlatformWindow *m_own;
};

} // namespace

class SurveyLayout : public SurveyScreenTest {
protected:
    /// Of a card that asks a question of that type, of which `meanwhile` is called before the
    /// second page.
    QImage pictureOf(const QByteArray &type, const std::function<void()> &meanwhile) {
        const QByteArray question = R"({"name":1,"type":")" + type + R"(","props":{"message":"How?",
            "options":[{"id":1,"label":"One","value":"1"}]}})";
        present("[" + question + "]");
        meanwhile();
        if (type == "likert")
            click(u"Option 3"_s);
        window.setFocus();
        // Within the corners, around which the host shows.
        const QRect card = frame(u"Kestrio Survey"_s).adjusted(14, 14, -14, -14);
        const QImage image = window.grab(card).toImage();
        delete survey();
        core->setSurvey(std::nullopt);
        return image;
    }
};

TEST_F(SurveyLayout, SizesTheCardByTheWindow) {
    present(shortQuestion);
    struct {
        QSize window;
        int x, width, below;
    } const cases[] = {
        {{320, 480}, 0, 320, 0},   {{599, 900}, 49, 500, 0},      {{900, 599}, 200, 500, 0},
        {{600, 600}, 50, 500, 14}, {{3840, 2160}, 1670, 500, 14},
    };
    for (const auto &known : cases) {
        window.resize(known.window);
        const QRect card = frame(u"Kestrio Survey"_s);
        EXPECT_EQ(card.x(), known.x) << known.window.width();
        EXPECT_EQ(card.width(), known.width);
        EXPECT_EQ(known.window.height() - card.bottom() - 1, known.below);
        EXPECT_EQ(frame(view<BackgroundView>()), QRect(QPoint(), known.window));
        const QRect dots = frame(view<PageControl>());
        const int pageHeight = dots.top() - 16 - card.top() - 32;
        EXPECT_EQ(frame(view<QuestionView>()).translated(-card.topLeft()),
                  QRect(16, 32, card.width() - 32, pageHeight));
        EXPECT_EQ(frame(view<CloseButton>()), QRect(card.right() - 41, card.y() + 16, 26, 26));
        EXPECT_EQ(card.bottom() - dots.bottom(), 8);
        EXPECT_EQ(frame(u"Option 1"_s).height(), 50);
    }
    const QImage picture = window.grab().toImage();
    EXPECT_NEAR(picture.pixelColor(0, 0).red(), window.palette().window().color().red() * 0.4, 1);
}

TEST_F(SurveyLayout, ScrollsWhatIsTooHighInsideTheSafeArea) {
    present(longQuestion());
    auto *const scroll = view<ScrollView>();
    EXPECT_EQ(frame(u"Kestrio Survey"_s), window.rect());
    ASSERT_GT(scroll->maximumOffset(), 2000);
    EXPECT_EQ(scroll->offset(), 0);
    key(Qt::Key_PageDown);
    EXPECT_EQ(scroll->offset(), scroll->height());
    const QPoint middle = frame(scroll).center();
    const auto turn = [&](int eighthsOfADegree) {
        QWindowSystemInterface::handleWheelEvent(
            window.windowHandle(), middle, window.mapToGlobal(middle), {}, {0, eighthsOfADegree});
        finish();
        return scroll->offset();
    };
    const int notch = scroll->height() - turn(120);
    EXPECT_GT(notch, 0);
    for (int step = 0; step < 120; ++step)
        turn(1);
    EXPECT_EQ(scroll->offset(), scroll->height() - 2 * notch);
    turn(-1);
    EXPECT_EQ(turn(-1), scroll->height() - 2 * notch + 1);
    key(Qt::Key_End);
    EXPECT_EQ(focused(), u"Multi-choice option: Last"_s);
    EXPECT_TRUE(frame(scroll).contains(frame(u"Multi-choice option: Last"_s)));
    key(Qt::Key_Home);
    EXPECT_TRUE(frame(scroll).contains(frame(u"Multi-choice option: First"_s)));
    const int page = scroll->height();
    const NotchedScreen screen(window.windowHandle());
    EXPECT_EQ(frame(u"Kestrio Survey"_s), window.rect().adjusted(0, 40, 0, 0));
    EXPECT_EQ(scroll->height(), page - 40 - 20);
}

TEST_F(SurveyLayout, ScrollsWithAFingerWithoutPressing) {
    present(longQuestion());
    auto *const scroll = view<ScrollView>();
    scroll->setOffset(1000);
    auto touch = QTest::touchEvent(window.windowHandle(), finger.get(), false);
    const QPoint start = frame(scroll).center();
    touch.press(0, start).commit();
    for (int step = 1; step <= 20; ++step) {
        QTest::qWait(5);
        touch.move(0, start - QPoint(0, step * 10)).commit();
    }
    touch.release(0, start - QPoint(0, 200)).commit();
    EXPECT_GT(scroll->offset(), 1100);
    QScroller::scroller(scroll)->stop();
    finish();
    EXPECT_EQ(history(), QStringList({u"seen"_s, u"seen 11"_s}));
    EXPECT_FALSE(view<SurveyView>()->isFinished());

    touch.press(0, start).commit();
    QWindowSystemInterface::handleTouchCancelEvent(window.windowHandle(), finger.get());
    finish();

    touch.press(0, QPoint(5, 5)).commit();
    scroll->setOffset(scroll->maximumOffset());
    touch.release(0, QPoint(5, 5)).commit();
    tap(frame(u"Multi-choice option: Last"_s).center());
    EXPECT_EQ(responses(), QList<QStringList>());
    EXPECT_TRUE(view<SurveyView>()->isFinished());
}

TEST_F(SurveyLayout, LooksTheSameWhateverTheHostLooksLike) {
    const QString sheet =
        // Not for the window itself, which lies in a parent.
        u"QWidget QWidget QWidget { min-width: 120px; max-width: 300px; max-height: 90px;"
        " padding: 9px; border: 3px solid red; background: yellow; color: red; font: 40px serif;"
        " text-decoration: underline }"
        "QLabel { min-height: 90px } QTextEdit { min-height: 200px }"
        "QTextEdit:focus { color: blue } QScrollBar { width: 40px }"_s;
    const QFont plainFont = QApplication::font();
    QFont font = plainFont;
    font.setBold(true);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 5);
    QWidget parent;
    window.setParent(&parent, Qt::Window);
    window.show();
    const std::function<void()> plain = [&] {
        qApp->setStyleSheet({});
        window.setStyleSheet({});
        parent.setStyleSheet({});
        QApplication::setStyle(new StillStyle);
        QApplication::setFont(plainFont);
        QApplication::setPalette({});
    };
    const std::function<void()> looks[] = {
        [&] { qApp->setStyleSheet(sheet); },
        [&] { window.setStyleSheet(sheet); },
        [&] { parent.setStyleSheet(sheet); },
        [] { QApplication::setStyle(new RudeStyle); },
        [&] { QApplication::setFont(font); },
        [] { QApplication::setPalette(QPalette(Qt::red, Qt::yellow)); },
    };
    for (const QByteArray type : {"nps", "open", "multiplechoice", "multipleselect", "likert"}) {
        const QImage picture = pictureOf(type, plain);
        for (const auto &look : looks) {
            SCOPED_TRACE(type.toStdString() + std::to_string(&look - looks));
            EXPECT_EQ(pictureOf(type, look), picture);
            EXPECT_EQ(pictureOf(type, [] {}), picture);
            plain();
        }
    }
    window.setParent(nullptr);
}

TEST_F(SurveyLayout, RisesJustAboveTheKeyboard) {
    present(R"([{"name":11,"type":"open","props":{"message":"Why?"}},
                {"name":12,"type":"likert","props":{"message":"How?"}}])");
    const int height = view<SurveyView>()->height();
    const Keyboard keyboard;
    EXPECT_EQ(frame(view<QuestionView>()).bottom() + 1, 400 - 8);
    EXPECT_EQ(view<SurveyView>()->height(), height);
    click(u"Open question button"_s);
    EXPECT_EQ(window.height() - 1, frame(u"Kestrio Survey"_s).bottom());
}

TEST_F(SurveyLayout, LeavesTheKeyboardAloneWhileNoWindowHasTheFocus) {
    present(R"([{"name":11,"type":"open","props":{"message":"Why?"}}])");
    QWindowSystemInterface::handleWindowActivated(nullptr);
    QWindowSystemInterface::flushWindowSystemEvents();
    const Keyboard keyboard;
    click(u"Open question button"_s);
    survey()->dismiss(false);
    EXPECT_EQ(responses().size(), 1);
}

TEST_F(SurveyLayout, MirrorsForLanguagesWrittenFromTheRight) {
    for (const QByteArray locale : {"he-IL", "ur_PK", "en"}) {
        present(shortQuestion, locale);
        const bool mirrored = locale != "en";
        const QRect card = frame(u"Kestrio Survey"_s);
        EXPECT_EQ(frame(view<CloseButton>()).center().x() < card.center().x(), mirrored);
        EXPECT_EQ(frame(u"Option 1"_s).x() > frame(u"Option 5"_s).x(), mirrored);
        key(mirrored ? Qt::Key_Left : Qt::Key_Right);
        EXPECT_EQ(focused(), u"Option 2"_s);
        EXPECT_EQ(frame(view<Label>()).left() - card.left(), mirrored ? 16 + 32 : 16);
        key(Qt::Key_Escape);
    }
}

} // namespace KestrioKit
