#include "KestrioKit/Core/Session/SurveyFlow.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <QTimer>

#include <algorithm>
#include <utility>

namespace KestrioKit {

SurveyFlow::SurveyFlow(std::unique_ptr<SurveySession> session, std::function<bool()> isAnimated)
    : m_session(std::move(session)),
      m_isAnimated(std::move(isAnimated)),
      m_pageCount(int(m_session->questions().size())) {
    connect(m_session.get(), &SurveySession::currentQuestionChanged, this, &SurveyFlow::leavePage);
    // The library may end the session itself, and the survey must then go. The connection is queued
    // because the flow also ends the session in the middle of its own dismissal.
    connect(
        m_session.get(), &SurveySession::ended, this, [this] { dismiss(true); },
        Qt::QueuedConnection);
    adoptPage();
}

SurveyFlow::~SurveyFlow() {
    if (m_session)
        m_session->close();
}

Animation *SurveyFlow::move(qreal &position, qreal end, Changed changed,
                            const AnimationTiming &timing, std::function<void()> finished) {
    const auto step = [this, &position, start = position, end, changed](qreal way) {
        position = start + (end - start) * way;
        Q_EMIT(this->*changed)();
    };
    return Animation::start(this, m_isAnimated(), timing, step, std::move(finished));
}

void SurveyFlow::setPageShown(bool isPageShown) {
    m_isPageShown = isPageShown;
    Q_EMIT answerableChanged();
}

// The entry

void SurveyFlow::begin() {
    move(m_dimming, 1, &SurveyFlow::dimmingChanged, AnimationTiming::easing(screenMetrics.dissolve),
         [this] { springIn(); });
}

void SurveyFlow::springIn() {
    move(m_cardPosition, 1, &SurveyFlow::cardMoved, AnimationTiming::entry(), [this] {
        m_hasEntered = true;
        Q_EMIT answerableChanged();
        Q_EMIT pageBegun();
        Q_EMIT entered();
    });
}

void SurveyFlow::appear() {
    if (m_session && std::exchange(m_isUnseen, false))
        m_session->markSeen();
}

void SurveyFlow::raise(qreal keyboardOffset) {
    delete m_keyboardAnimation;
    m_keyboardAnimation = move(m_keyboardOffset, keyboardOffset, &SurveyFlow::cardMoved,
                               AnimationTiming::easing(screenMetrics.keyboard));
}

// Pages

void SurveyFlow::adoptPage() {
    m_isFinished = m_session->isComplete();
    m_presentedIndex = m_session->currentIndex();
    m_question = m_session->currentQuestion();
    if (!m_isFinished)
        m_session->beginQuestion();
}

// A page that is fading out still accepts an answer to its own question.
void SurveyFlow::answer(const QVariant &value) {
    if (m_session)
        m_session->answer(m_presentedIndex, value);
}

void SurveyFlow::leavePage() {
    m_currentPage = std::clamp(m_session->currentIndex(), 0, std::max(m_pageCount - 1, 0));
    Q_EMIT currentPageChanged();
    if (std::exchange(m_isLeavingPage, true))
        return;
    move(m_pageOpacity, 0, &SurveyFlow::pageOpacityChanged,
         AnimationTiming::easing(screenMetrics.transition), [this] { replacePage(); });
}

void SurveyFlow::replacePage() {
    m_isLeavingPage = false;
    if (!m_session)
        return;
    // The visitor must not answer a page that is not visible yet.
    setPageShown(false);
    Q_EMIT pageLeft();
    m_growth = 0;
    m_containerOpacity = 0;
    Q_EMIT containerOpacityChanged();
    m_pageOpacity = 1;
    Q_EMIT pageOpacityChanged();
    adoptPage();
    Q_EMIT pageChanged();
    if (!m_isFinished) {
        m_isUnseen = true;
        Q_EMIT questionPresented();
    }
    growToPage();
}

void SurveyFlow::growToPage() {
    move(m_growth, 1, &SurveyFlow::growthChanged, AnimationTiming::easing(screenMetrics.transition),
         [this] { showPage(); });
}

void SurveyFlow::showPage() {
    setPageShown(true);
    Q_EMIT pageBegun();
    if (m_isFinished)
        QTimer::singleShot(screenMetrics.finish, this, [this] { dismiss(true); });
    move(m_containerOpacity, 1, &SurveyFlow::containerOpacityChanged,
         AnimationTiming::easing(screenMetrics.transition));
}

void SurveyFlow::thank() {
    if (std::exchange(m_hasThanked, true))
        return;
    move(m_thanksLabel, 1, &SurveyFlow::thanksLabelChanged, AnimationTiming::thanksLabel());
    move(m_thanksImage, 1, &SurveyFlow::thanksImageChanged, AnimationTiming::thanksImage());
}

// Dismissal

void SurveyFlow::close() {
    if (!m_session)
        return;
    m_session->close();
    dismiss(true);
}

void SurveyFlow::windowGone() {
    if (m_session)
        m_session->close();
    dismiss(false);
}

void SurveyFlow::dismiss(bool animated) {
    if (!m_session || (m_isDismissing && animated))
        return;
    m_isDismissing = true;
    m_session->finish();
    // The front end moves the focus first. Otherwise each control that stops accepting input would
    // pass it on to the next.
    Q_EMIT leaving();
    Q_EMIT answerableChanged();
    if (animated)
        slideOut();
    else
        end();
}

void SurveyFlow::slideOut() {
    Q_EMIT slidingOut();
    move(m_cardPosition, 0, &SurveyFlow::cardMoved, AnimationTiming::easing(screenMetrics.slideOut),
         [this] { dissolve(); });
}

void SurveyFlow::dissolve() {
    move(m_dimming, 0, &SurveyFlow::dimmingChanged, AnimationTiming::easing(screenMetrics.dissolve),
         [this] { end(); });
}

void SurveyFlow::end() {
    // A receiver may destroy the flow.
    if (const auto session = std::move(m_session))
        Q_EMIT over();
}

} // namespace KestrioKit
