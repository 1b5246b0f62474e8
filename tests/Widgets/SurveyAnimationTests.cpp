#include "tests/Widgets/SurveyScreenTest.h"

#include "KestrioKit/Core/Session/Animation.h"
#include "KestrioKit/Widgets/Controls/PageControl.h"
#include "KestrioKit/Widgets/Controls/ScrollView.h"
#include "KestrioKit/Widgets/Drawing/ViewEffect.h"
#include "KestrioKit/Widgets/Overlay/BackgroundView.h"
#include "KestrioKit/Widgets/Survey/QuestionView.h"
#include "KestrioKit/Widgets/Survey/SurveyView.h"

#include <QAnimationDriver>
#include <QApplication>
#include <QStyleFactory>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The time of animations, which passes when a test says so.
struct ManualAnimationDriver final : QAnimationDriver {
    ManualAnimationDriver() { install(); }
    ~ManualAnimationDriver() override { uninstall(); }

    qint64 elapsed() const override { return time.count(); }
    void start() override {
        time = 0ms;
        QAnimationDriver::start();
    }

    std::chrono::milliseconds time{0};
};

} // namespace

/// The same with everything moving; time passes as the test says.
class SurveyAnimation : public SurveyScreenTest {
protected:
    SurveyAnimation() { QApplication::setStyle(QStyleFactory::create(u"fusion"_s)); }

    void pass(std::chrono::milliseconds duration) {
        driver.time += duration;
        driver.advance();
        // What begins now begins in the event loop.
        QCoreApplication::processEvents();
    }
    int cardTop() const { return frame(view<SurveyView>()).top(); }

    ManualAnimationDriver driver;
    static constexpr auto twoScales = R"([
        {"name":11,"type":"likert","props":{"message":"How was it?"}},
        {"name":12,"type":"likert","props":{"message":"And how was that, in more words?"}}])";
};

TEST_F(SurveyAnimation, SpringsInAndSlidesOut) {
    present(twoScales);
    const int height = window.height();
    const int place = height - view<SurveyView>()->height();
    pass(199ms);
    EXPECT_GT(view<BackgroundView>()->alpha(), 0.9);
    EXPECT_EQ(cardTop(), height);
    pass(1ms);
    EXPECT_GT(cardTop(), place + (height - place) / 2);
    const EventCounter hostFrames(button, QEvent::Paint);
    pass(20ms);
    EXPECT_EQ(hostFrames.count, 0) << "the host is painted for each frame";
    int highest = height;
    for (auto time = 0ms; time < 600ms && !survey()->findChildren<Animation *>().isEmpty();
         time += 10ms) {
        highest = std::min(highest, cardTop());
        pass(10ms);
    }
    EXPECT_NEAR(highest, place - (height - place) * 0.046, 3);
    EXPECT_EQ(cardTop(), place);
    EXPECT_GT(hostFrames.count, 0) << "what has changed under the survey does not come to light";
    EXPECT_EQ(view<BackgroundView>()->alpha(), 1);
    key(Qt::Key_Escape);
    pass(70ms);
    EXPECT_GT(cardTop(), place);
    EXPECT_LT(cardTop(), height);
    pass(200ms);
    EXPECT_EQ(cardTop(), height);
    EXPECT_TRUE(core->survey());
    pass(250ms);
    EXPECT_FALSE(survey() || core->survey());
}

TEST_F(SurveyAnimation, CountsKeysAndTapsOnceItIsThere) {
    present(twoScales);
    const auto use = [this] {
        key(Qt::Key_Space);
        key(Qt::Key_Escape);
        click(QPoint(5, 5));
    };
    use();
    pass(200ms);
    pass(399ms);
    use();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
    pass(1ms);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(focused(), u"Option 1"_s);
    EXPECT_EQ(history(), QStringList({u"seen"_s, u"seen 11"_s}));
    use();
    while (survey())
        pass(50ms);
    EXPECT_EQ(history(), QStringList({u"closed 12"_s, u"seen"_s, u"seen 11"_s, u"seen 12"_s}));
    EXPECT_EQ(responses(), QList<QStringList>({{u"11=1"_s}}));
}

TEST_F(SurveyAnimation, APageIsAnsweredOnceItIsSeen) {
    present(twoScales);
    pass(200ms);
    pass(400ms);
    const QPoint option = frame(u"Option 3"_s).center();
    click(option);
    key(Qt::Key_Space);
    key(Qt::Key_Return);
    click(option);
    key(Qt::Key_Right);
    key(Qt::Key_Space);
    pass(70ms);
    EXPECT_LT(ViewEffect::alpha(view<QuestionView>()), 0.9);
    pass(200ms);
    EXPECT_EQ(ViewEffect::alpha(view<ScrollView>()), 0);
    const int growing = view<SurveyView>()->height();
    click(option);
    key(Qt::Key_Space);
    pass(250ms);
    EXPECT_GT(view<SurveyView>()->height(), growing);
    EXPECT_EQ(view<PageControl>()->currentPage(), 1);
    EXPECT_EQ(focused(), u"Option 1"_s);
    pass(250ms);
    click(u"Option 5"_s);
    pass(60ms);
    key(Qt::Key_Escape);
    while (survey())
        pass(50ms);
    EXPECT_EQ(history(), QStringList({u"closed"_s, u"seen"_s, u"seen 11"_s, u"seen 12"_s}));
    EXPECT_EQ(responses(), QList<QStringList>({{u"11=3"_s, u"11=4"_s, u"12=5"_s}}));
}

TEST_F(SurveyAnimation, APageFadesInAndOutAtTheSameTime) {
    present(twoScales);
    for (const auto step : {200ms, 400ms})
        pass(step);
    click(u"Option 3"_s);
    for (const auto step : {200ms, 200ms, 100ms})
        pass(step);
    const qreal halfway = ViewEffect::alpha(view<ScrollView>());
    EXPECT_LT(halfway, 0.9);
    click(u"Option 5"_s);
    pass(50ms);
    EXPECT_GT(ViewEffect::alpha(view<ScrollView>()), halfway);
    // The first page may not be deleted yet.
    const qreal page = ViewEffect::alpha(survey()->findChildren<QuestionView *>().last());
    EXPECT_GT(page, 0.7);
    EXPECT_LT(page, 1);
}

TEST_F(SurveyAnimation, IsNotAnsweredIfItEndsWhileItEnters) {
    present(twoScales);
    pass(200ms);
    pass(300ms);
    survey()->dismiss(true);
    for (; survey(); pass(50ms))
        EXPECT_FALSE(view<SurveyView>()->isEnabled());
    EXPECT_FALSE(core->survey());
}

} // namespace KestrioKit
