#pragma once

#include "KestrioKit/Core/Platform/LanguageBundle.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Service/KestrioSurveyResponder.h"
#include "KestrioKit/Core/Session/HostAppearance.h"
#include "KestrioKit/Core/Survey/Survey.h"
#include "KestrioKit/SurveyAppearance.h"
#include "KestrioKit/SurveySession.h"

#include <functional>
#include <memory>

namespace KestrioKit {

/// Receives the events of a session on the main thread, also while the session's signals are
/// blocked. Each function may be empty.
struct SessionObserver {
    Block shown = {};
    std::function<void(int index)> questionAnswered = {};
    std::function<void(SurveySession::Outcome outcome)> ended = {};
    /// Called when the session is destroyed.
    Block gone = {};
};

/// What a session needs besides its survey.
struct SessionContext {
    /// Must outlive the session.
    const Clock &clock;
    QColor themeColor;
    /// Must not be `service`.
    SurveyAppearance appearance = SurveyAppearance::light;
    /// Reports to the service. When null, nothing is reported.
    std::unique_ptr<KestrioSurveyResponder> responder = nullptr;
    SessionObserver observer = {};
};

/// Returns the language in which a survey is shown: its locale, or English if it has none.
QString languageOf(const Survey &survey);

/// The private part of a `SurveySession`. Must be used on the main thread.
class SurveySessionPrivate {
public:
    /// Creates a session and gives the ownership to the caller. There must be no other session.
    static std::unique_ptr<SurveySession> make(Survey survey, SessionContext context);

    /// Returns the session that exists, or null if there is none.
    static SurveySession *existing();

    /// Closes the session that exists, if there is one, without reporting anything to the service.
    static void discardExisting();

    SurveySessionPrivate(Survey survey, SessionContext context, const AnyLanguageBundle &bundle);

    /// Returns the service's number for the current question, or nothing if the survey is complete.
    std::optional<qint64> currentQuestionId() const;
    /// Returns whether `index` is the index of a question.
    bool contains(qint64 index) const;

    const Survey survey;
    const QString language;
    const SurveyTexts texts;
    const QList<SurveyQuestion> questions;
    SessionContext context;
    ApplicationLifecycle::Observation willTerminateObserver;
    SurveyPalette palette;
    /// Null if the palette does not follow the host.
    std::unique_ptr<HostAppearance> hostAppearance;
    qint64 currentIndex = 0;
    /// The time at which the current question became current, and the time of the last call of
    /// `SurveySession::beginQuestion()`, both in seconds since 1970.
    double currentSince;
    std::optional<double> pageMadeAt;
    bool wasSeen = false;
    bool isOver = false;
};

} // namespace KestrioKit
