#include "tests/Widgets/SurveyScreenTest.h"

#include <QApplication>
#include <QTimer>
#include <QWindow>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize windowSize(390, 700);

} // namespace

SurveyScreenTest::SurveyScreenTest() {
    QApplication::setStyle(new StillStyle);
    field.setGeometry(0, 0, 100, 30);
    button.setGeometry(0, windowSize.height() - 100, windowSize.width(), 100);
    window.resize(windowSize);
    window.show();
    window.activateWindow();
    EXPECT_TRUE(
        QTest::qWaitForWindowActive(&window, int(std::chrono::milliseconds(patience).count())));
    field.setFocus();
}

void SurveyScreenTest::TearDown() {
    delete survey();
    SurveyFixture::TearDown();
}

void SurveyScreenTest::present(const QByteArray &questions, const QByteArray &locale,
                               QWidget *host) {
    hold(questions, locale);
    core->presentSurvey(host ? host : &window);
    finish();
}

QWidget *SurveyScreenTest::control(const QString &identifier) const {
    for (auto *const view : window.findChildren<QWidget *>(identifier)) {
        if (view->isVisible())
            return view;
    }
    ADD_FAILURE() << "there is no " << qPrintable(identifier);
    return nullptr;
}

QRect SurveyScreenTest::frame(const QWidget *view) const {
    return view ? QRect(view->mapTo(&window, QPoint()), view->size()) : QRect();
}

QRect SurveyScreenTest::frame(const QString &identifier) const {
    return frame(control(identifier));
}

void SurveyScreenTest::click(const QPoint &position) {
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, position);
    finish();
}

void SurveyScreenTest::click(const QString &identifier) {
    click(frame(identifier).center());
}

void SurveyScreenTest::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window.windowHandle(), key, modifiers);
    finish();
}

void SurveyScreenTest::tap(const QPoint &position) {
    QTest::touchEvent(window.windowHandle(), finger.get()).press(0, position);
    QTest::touchEvent(window.windowHandle(), finger.get()).release(0, position);
    finish();
}

QString SurveyScreenTest::focused() const {
    return window.focusWidget() ? window.focusWidget()->objectName() : QString();
}

void SurveyScreenTest::letTheWaitPass() {
    for (QTimer *const timer : survey()->findChildren<QTimer *>()) {
        if (timer->isActive() && timer->intervalAsDuration() == std::chrono::seconds(2)) {
            QTimerEvent timeout(timer->timerId());
            QCoreApplication::sendEvent(timer, &timeout);
            return finish();
        }
    }
    FAIL();
}

} // namespace KestrioKit
