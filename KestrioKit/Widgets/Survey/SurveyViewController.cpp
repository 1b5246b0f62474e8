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
#include <QTimer>

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
    : m_session(std::move(session)),
      m_backgroundView(new BackgroundView(m_session->palette().dimming)),
      m_surveyView(new SurveyView(*m_session, clock)) {}

SurveyViewController::~SurveyViewController() {
    if (current() != this)
        return;
    current() = nullptr;
    m_session->close();
}

SurveyViewController *SurveyViewController::presented() {
    return current();
}

// Presentation

void SurveyViewController::present(QWidget *from) {
    current() = this;
    loadView();
    cover(from->window());
    animateEntry();
}

void SurveyViewController::loadView() {
    setLayoutDirection(m_session->layoutDirection());
    m_backgroundView->setParent(this);
    connect(m_backgroundView, &BackgroundView::tapped, this,
            &SurveyViewController::userInitiatedClose);
    m_surveyView->setParent(this);
    connect(m_surveyView, &SurveyView::questionPresented, this,
            &SurveyViewController::questionPresented);
    connect(m_surveyView, &SurveyView::finished, this,
            [this] { QTimer::singleShot(screenMetrics.finish, this, [this] { dismiss(true); }); });
    connect(m_surveyView, &SurveyView::closeTapped, this,
            &SurveyViewController::userInitiatedClose);
    connect(m_surveyView, &SurveyView::heightChanged, this, &SurveyViewController::layOut);
    connect(&m_keyboardObserver, &KeyboardObserver::changed, this,
            &SurveyViewController::keyboardChanged);
    setAnswerable(false);
    questionPresented();
}

// A visitor who was typing or clicking when the survey appeared did not mean to answer it.
void SurveyViewController::setAnswerable(bool isAnswerable) {
    m_isAnswerable = isAnswerable;
    m_backgroundView->setEnabled(isAnswerable);
    m_surveyView->setEnabled(isAnswerable);
}

void SurveyViewController::animateEntry() {
    animate(
        this, AnimationTiming::easing(screenMetrics.dissolve),
        [this](qreal way) { m_backgroundView->setAlpha(way); }, [this] { springIn(); });
}

void SurveyViewController::springIn() {
    animate(
        this, AnimationTiming::entry(),
        [this](qreal way) {
            m_cardPosition = way;
            layOut();
        },
        [this] { entryEnded(); });
}

void SurveyViewController::entryEnded() {
    setAnswerable(true);
    m_surveyView->beginPage(Qt::OtherFocusReason);
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
    const qreal top = parked + (bottom - cardHeight - parked) * m_cardPosition - m_keyboardOffset;
    m_surveyView->setGeometry((width() - cardWidth) / 2, qRound(top), cardWidth, cardHeight);
}

void SurveyViewController::resizeEvent(QResizeEvent *event) {
    ModalOverlay::resizeEvent(event);
    if (m_keyboardOffset > 0)
        keyboardChanged();
}

void SurveyViewController::keyboardChanged() {
    const int covered = KeyboardObserver::coveredHeight(height());
    // The card rises only until the end of the page is above the keyboard.
    const int belowPage = m_surveyView->height() - m_surveyView->pageBottom();
    const int offset =
        covered > 0 ? std::max(KestrioUI::Padding::tiny + covered - belowPage, 0) : 0;
    delete m_keyboardAnimation;
    m_keyboardAnimation = animate(this, AnimationTiming::easing(screenMetrics.keyboard),
                                  [this, start = m_keyboardOffset, offset](qreal way) {
                                      m_keyboardOffset = start + (offset - start) * way;
                                      layOut();
                                  });
}

void SurveyViewController::questionPresented() {
    m_isUnseen = true;
    visibilityChanged();
}

// A question counts as seen only when the window actually shows it.
void SurveyViewController::visibilityChanged() {
    if (m_isUnseen && isVisible() && !window()->isMinimized()) {
        m_isUnseen = false;
        m_session->markSeen();
    }
}

// Dismissal

void SurveyViewController::keyPressed(const QKeyEvent &event) {
    if (!m_isAnswerable)
        return;
    if (event.key() != Qt::Key_Escape)
        m_surveyView->scroll(event.key());
    // A key that auto-repeats was pressed for something else.
    else if (!m_surveyView->isFinished() && !event.isAutoRepeat())
        userInitiatedClose();
}

void SurveyViewController::userInitiatedClose() {
    m_session->close();
    dismiss(true);
}

void SurveyViewController::windowGone() {
    m_session->close();
    dismiss(false);
}

// Scrolling would move the pressed control away from under the pointer.
void SurveyViewController::focusMoved(QWidget *view) {
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        m_surveyView->reveal(view);
}

void SurveyViewController::dismiss(bool animated) {
    if (current() != this || (m_isDismissing && animated))
        return;
    m_isDismissing = true;
    m_session->finish();
    setFocus(Qt::OtherFocusReason);
    m_surveyView->setEnabled(false);
    KeyboardObserver::hide();
    if (animated)
        slideCardOut();
    else
        end();
}

void SurveyViewController::slideCardOut() {
    freeze();
    animate(
        this, AnimationTiming::easing(screenMetrics.slideOut),
        [this, start = m_cardPosition](qreal way) {
            m_cardPosition = start * (1 - way);
            layOut();
        },
        [this] { dissolve(); });
}

void SurveyViewController::dissolve() {
    animate(
        this, AnimationTiming::easing(screenMetrics.dissolve),
        [this, start = m_backgroundView->alpha()](qreal way) {
            m_backgroundView->setAlpha(start * (1 - way));
        },
        [this] { end(); });
}

void SurveyViewController::end() {
    if (current() != this)
        return;
    uncover();
    current() = nullptr;
    m_session.reset();
    deleteLater();
}

} // namespace KestrioKit
