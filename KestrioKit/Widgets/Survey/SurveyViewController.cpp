#include "KestrioKit/Widgets/Survey/SurveyViewController.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Core/Session/SizeClasses.h"
#include "KestrioKit/Widgets/Drawing/Animate.h"
#include "KestrioKit/Widgets/Overlay/BackgroundView.h"
#include "KestrioKit/Widgets/Overlay/WindowMetrics.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>

#include <algorithm>

namespace KestrioKit {

namespace {

QPointer<SurveyViewController> &current() {
    static auto *const controller = new QPointer<SurveyViewController>;
    return *controller;
}

} // namespace

SurveyViewController::SurveyViewController(std::unique_ptr<SurveySession> session,
                                           const Clock &clock)
    : m_flow(std::move(session), [this] { return isAnimated(this); }),
      m_backgroundView(new BackgroundView(m_flow.session()->palette().dimming)),
      m_surveyView(new SurveyView(m_flow, clock)) {
    m_flow.setParent(this);
}

SurveyViewController::~SurveyViewController() {
    if (current() == this)
        current() = nullptr;
}

SurveyViewController *SurveyViewController::presented() {
    return current();
}

// Presentation

void SurveyViewController::present(QWidget *from) {
    current() = this;
    loadView();
    cover(from->window());
    m_flow.begin();
}

void SurveyViewController::loadView() {
    setLayoutDirection(m_flow.session()->layoutDirection());
    m_backgroundView->setParent(this);
    m_backgroundView->setEnabled(false);
    m_surveyView->setParent(this);
    connect(m_backgroundView, &BackgroundView::tapped, &m_flow, &SurveyFlow::close);
    connect(m_surveyView, &SurveyView::heightChanged, this, &SurveyViewController::layOut);
    connect(&m_keyboardObserver, &KeyboardObserver::changed, this,
            &SurveyViewController::keyboardChanged);
    follow();
}

void SurveyViewController::follow() {
    connect(&m_flow, &SurveyFlow::dimmingChanged, this,
            [this] { m_backgroundView->setAlpha(m_flow.dimming()); });
    connect(&m_flow, &SurveyFlow::cardMoved, this, &SurveyViewController::layOut);
    connect(&m_flow, &SurveyFlow::entered, this, &SurveyViewController::entryEnded);
    connect(&m_flow, &SurveyFlow::questionPresented, this,
            &SurveyViewController::visibilityChanged);
    connect(&m_flow, &SurveyFlow::leaving, this, &SurveyViewController::leave);
    connect(&m_flow, &SurveyFlow::slidingOut, this, &SurveyViewController::freeze);
    connect(&m_flow, &SurveyFlow::over, this, &SurveyViewController::end);
}

void SurveyViewController::entryEnded() {
    m_backgroundView->setEnabled(true);
    thaw();
}

// Layout

int SurveyViewController::bottomOffset() const {
    return sizeClasses(size()).isRegular() ? screenMetrics.cardBottomPadding : 0;
}

void SurveyViewController::layOut() {
    m_backgroundView->setGeometry(rect());
    const int cardWidth = std::min(width(), screenMetrics.cardMaxWidth);
    const int highest = safeAreaInsets(*this).top();
    const int bottom = height() - bottomOffset();
    const int cardHeight = std::min(m_surveyView->heightForWidth(cardWidth), bottom - highest);
    const qreal parked = height();
    const qreal top =
        parked + (bottom - cardHeight - parked) * m_flow.cardPosition() - m_flow.keyboardOffset();
    m_surveyView->setGeometry((width() - cardWidth) / 2, qRound(top), cardWidth, cardHeight);
}

void SurveyViewController::resizeEvent(QResizeEvent *event) {
    ModalOverlay::resizeEvent(event);
    if (m_flow.keyboardOffset() > 0)
        keyboardChanged();
}

void SurveyViewController::keyboardChanged() {
    const int covered = KeyboardObserver::coveredHeight(height());
    // The card rises only until the end of the page is above the keyboard.
    const int belowPage = m_surveyView->height() - m_surveyView->pageBottom();
    const int offset =
        covered > 0 ? std::max(KestrioUI::Padding::tiny + covered - belowPage, 0) : 0;
    m_flow.raise(offset);
}

// A question counts as seen only when the window actually shows it.
void SurveyViewController::visibilityChanged() {
    if (isVisible() && !window()->isMinimized())
        m_flow.appear();
}

// A visitor who was typing when the survey appeared did not mean to scroll or to close it.
void SurveyViewController::keyPressed(const QKeyEvent &event) {
    if (!m_flow.hasEntered())
        return;
    if (event.key() != Qt::Key_Escape)
        m_surveyView->scroll(event.key());
    // A key that auto-repeats was pressed for something else.
    else if (!m_flow.isFinished() && !event.isAutoRepeat())
        m_flow.close();
}

// Scrolling would move the pressed control away from under the pointer.
void SurveyViewController::focusMoved(QWidget *view) {
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        m_surveyView->reveal(view);
}

// Dismissal

void SurveyViewController::windowGone() {
    m_flow.windowGone();
}

void SurveyViewController::leave() {
    setFocus(Qt::OtherFocusReason);
    KeyboardObserver::hide();
}

void SurveyViewController::end() {
    uncover();
    current() = nullptr;
    deleteLater();
}

} // namespace KestrioKit
