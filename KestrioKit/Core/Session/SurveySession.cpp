#include "KestrioKit/SurveySession.h"

#include "KestrioKit/Core/Session/SurveyForms.h"
#include "KestrioKit/Core/Session/SurveyPalettes.h"
#include "KestrioKit/Core/Session/SurveySessionPrivate.h"
#include "KestrioKit/Core/Survey/Routing.h"

#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <utility>

using namespace KestrioKit;

namespace {

constexpr QLatin1StringView defaultLocale("en");

SurveySession *&existingSession() {
    static SurveySession *session = nullptr;
    return session;
}

} // namespace

namespace KestrioKit {

QString languageOf(const Survey &survey) {
    return survey.locale.value_or(defaultLocale);
}

std::unique_ptr<SurveySession> SurveySessionPrivate::make(Survey survey, SessionContext context) {
    const AnyLanguageBundle bundle(languageOf(survey));
    return std::unique_ptr<SurveySession>(new SurveySession(
        std::make_unique<SurveySessionPrivate>(std::move(survey), std::move(context), bundle)));
}

SurveySession *SurveySessionPrivate::existing() {
    return existingSession();
}

void SurveySessionPrivate::discardExisting() {
    SurveySession *const session = existing();
    if (!session)
        return;
    session->m_state->context.responder.reset();
    session->close();
}

SurveySessionPrivate::SurveySessionPrivate(Survey shownSurvey, SessionContext sessionContext,
                                           const AnyLanguageBundle &bundle)
    : survey(std::move(shownSurvey)),
      language(languageOf(survey)),
      texts(textsToShow(bundle)),
      questions(questionsToShow(survey.questions, bundle)),
      context(std::move(sessionContext)),
      palette(paletteFor(context.appearance, context.themeColor)),
      currentSince(context.clock.secondsSince1970()) {}

bool SurveySessionPrivate::contains(qint64 index) const {
    return index >= 0 && index < survey.questions.size();
}

std::optional<qint64> SurveySessionPrivate::currentQuestionId() const {
    if (!contains(currentIndex))
        return std::nullopt;
    return survey.questions.at(currentIndex).name;
}

} // namespace KestrioKit

SurveySession::SurveySession(std::unique_ptr<SurveySessionPrivate> state)
    : m_state(std::move(state)) {
    existingSession() = this;
    m_state->willTerminateObserver = ApplicationLifecycle::shared().observe(
        ApplicationLifecycle::Event::willTerminate, [this] { close(); });
    if (m_state->context.appearance != SurveyAppearance::system)
        return;
    m_state->hostAppearance = std::make_unique<HostAppearance>([this] {
        m_state->palette = paletteFor(m_state->context.appearance, m_state->context.themeColor);
        Q_EMIT appearanceChanged();
    });
}

SurveySession::~SurveySession() {
    const QSignalBlocker blocker(this);
    if (isComplete())
        finish();
    else
        close();
    existingSession() = nullptr;
    if (m_state->context.observer.gone)
        m_state->context.observer.gone();
}

QList<SurveyQuestion> SurveySession::questions() const {
    return m_state->questions;
}

int SurveySession::currentIndex() const {
    // Routing may lead to any number. Each number outside the list means that the survey is
    // complete.
    return int(std::clamp<qint64>(m_state->currentIndex, -1, m_state->questions.size()));
}

SurveyQuestion SurveySession::currentQuestion() const {
    return m_state->questions.value(m_state->currentIndex);
}

bool SurveySession::isComplete() const {
    return !m_state->contains(m_state->currentIndex);
}

bool SurveySession::isOver() const {
    return m_state->isOver;
}

QString SurveySession::language() const {
    return m_state->language;
}

Qt::LayoutDirection SurveySession::layoutDirection() const {
    return QLocale(m_state->language).textDirection();
}

SurveyTexts SurveySession::texts() const {
    return m_state->texts;
}

QColor SurveySession::themeColor() const {
    return m_state->context.themeColor;
}

SurveyPalette SurveySession::palette() const {
    return m_state->palette;
}

bool SurveySession::answer(const QVariant &value) {
    return answer(currentIndex(), value);
}

bool SurveySession::answer(int index, const QVariant &value) {
    SurveySessionPrivate &state = *m_state;
    if (state.isOver || !state.contains(index))
        return false;
    const auto response = answerTo(state.questions.at(index), value);
    if (!response)
        return false;
    const Clock &clock = state.context.clock;
    if (state.context.responder)
        state.context.responder->submitResponse(
            makeQuestionResponse(state.survey.questions.at(index), *response,
                                 state.pageMadeAt.value_or(state.currentSince), clock));
    state.currentIndex = nextQuestionIndex(state.survey.questions, index, response);
    state.currentSince = clock.secondsSince1970();
    // Receivers may destroy the session.
    const auto tell = state.context.observer.questionAnswered;
    const QPointer<SurveySession> self(this);
    Q_EMIT questionAnswered(index);
    if (self)
        Q_EMIT currentQuestionChanged();
    if (tell)
        tell(index);
    return true;
}

void SurveySession::beginQuestion() {
    m_state->pageMadeAt = m_state->context.clock.secondsSince1970();
}

void SurveySession::markSeen() {
    if (isComplete())
        return;
    if (m_state->context.responder)
        m_state->context.responder->seen(m_state->currentQuestionId());
    if (std::exchange(m_state->wasSeen, true))
        return;
    const Block tell = m_state->context.observer.shown;
    Q_EMIT shown();
    if (tell)
        tell();
}

void SurveySession::finish() {
    if (std::exchange(m_state->isOver, true))
        return;
    if (m_state->context.responder)
        m_state->context.responder->submit();
    tellEnd(Outcome::Finished);
}

void SurveySession::close() {
    if (std::exchange(m_state->isOver, true))
        return;
    if (m_state->context.responder) {
        m_state->context.responder->closed(m_state->currentQuestionId());
        m_state->context.responder->submit();
    }
    tellEnd(Outcome::Closed);
}

void SurveySession::tellEnd(Outcome outcome) {
    const auto tell = m_state->context.observer.ended;
    Q_EMIT ended(outcome);
    if (tell)
        tell(outcome);
}
