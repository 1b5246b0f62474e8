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

void SurveyFlow::move(const AnimationTiming &timing, const Apply &apply,
                      std::function<void()> finished) {
    const auto step = [this, apply](qreal way) {
        apply(way);
        Q_EMIT moved();
    };
    Animation::start(this, m_isAnimated(), timing, step, std::move(finished));
}

void SurveyFlow::setAnswerable(bool isAnswerable, bool isPageShown) {
    m_isAnswerable = isAnswerable;
    m_isPageShown = isPageShown;
    Q_EMIT answerableChanged();
}

// The entry

void SurveyFlow::begin() {
    move(
        AnimationTiming::easing(screenMetrics.dissolve), [this](qreal way) { m_dimming = way; },
        [this] { springIn(); });
}

void SurveyFlow::springIn() {
    move(
        AnimationTiming::entry(), [this](qreal way) { m_cardPosition = way; },
        [this] {
            setAnswerable(true, true);
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
    const auto step = [this, start = m_keyboardOffset, keyboardOffset](qreal way) {
        m_keyboardOffset = start + (keyboardOffset - start) * way;
        Q_EMIT moved();
    };
    m_keyboardAnimation = Animation::start(this, m_isAnimated(),
                                           AnimationTiming::easing(screenMetrics.keyboard), step);
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
    move(
        AnimationTiming::easing(screenMetrics.transition),
        [this](qreal way) { m_pageOpacity = 1 - way; }, [this] { replacePage(); });
}

void SurveyFlow::replacePage() {
    m_isLeavingPage = false;
    if (!m_session)
        return;
    // The visitor must not answer a page that is not visible yet.
    setAnswerable(m_isAnswerable, false);
    Q_EMIT pageLeft();
    adoptPage();
    m_growth = 0;
    m_pageOpacity = 0;
    Q_EMIT pageChanged();
    if (!m_isFinished) {
        m_isUnseen = true;
        Q_EMIT questionPresented();
    }
    growToPage();
}

void SurveyFlow::growToPage() {
    if (m_isFinished)
        animateThanks();
    move(
        AnimationTiming::easing(screenMetrics.transition), [this](qreal way) { m_growth = way; },
        [this] { showPage(); });
}

void SurveyFlow::showPage() {
    setAnswerable(m_isAnswerable, true);
    Q_EMIT pageBegun();
    if (m_isFinished)
        QTimer::singleShot(screenMetrics.finish, this, [this] { dismiss(true); });
    move(AnimationTiming::easing(screenMetrics.transition),
         [this](qreal way) { m_pageOpacity = way; });
}

void SurveyFlow::animateThanks() {
    move(AnimationTiming::thanksLabel(), [this](qreal way) { m_thanksLabel = way; });
    move(AnimationTiming::thanksImage(), [this](qreal way) { m_thanksImage = way; });
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
    setAnswerable(false, m_isPageShown);
    Q_EMIT leaving();
    if (animated)
        slideOut();
    else
        end();
}

void SurveyFlow::slideOut() {
    move(
        AnimationTiming::easing(screenMetrics.slideOut),
        [this, start = m_cardPosition](qreal way) { m_cardPosition = start * (1 - way); },
        [this] { dissolve(); });
}

void SurveyFlow::dissolve() {
    move(
        AnimationTiming::easing(screenMetrics.dissolve),
        [this, start = m_dimming](qreal way) { m_dimming = start * (1 - way); }, [this] { end(); });
}

void SurveyFlow::end() {
    if (!m_session)
        return;
    m_session.reset();
    Q_EMIT over();
}

} // namespace KestrioKit
