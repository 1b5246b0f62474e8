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

/// Told on the main thread what becomes of a session, also while its signals are blocked. Each
/// function may be empty.
struct SessionObserver {
    Block shown = {};
    std::function<void(int index)> questionAnswered = {};
    std::function<void(SurveySession::Outcome outcome)> ended = {};
    /// The session has been destroyed.
    Block gone = {};
};

/// What a session works with besides its survey.
struct SessionContext {
    /// Must outlive the session.
    const Clock &clock;
    QColor themeColor;
    /// Not `service`.
    SurveyAppearance appearance = SurveyAppearance::light;
    /// Reports to the service. When null, nothing is reported.
    std::unique_ptr<KestrioSurveyResponder> responder = nullptr;
    SessionObserver observer = {};
};

/// The language that a survey is shown in: its locale, or English without one.
QString languageOf(const Survey &survey);

/// What stands behind a `SurveySession`.
class SurveySessionPrivate {
public:
    /// There must be no other session. For the main thread.
    static std::unique_ptr<SurveySession> make(Survey survey, SessionContext context);

    /// The session that exists; null when there is none. For the main thread.
    static SurveySession *existing();

    /// Closes the session that exists, if any, and reports nothing of it any more. For the main
    /// thread.
    static void discardExisting();

    SurveySessionPrivate(Survey survey, SessionContext context, const AnyLanguageBundle &bundle);

    std::optional<qint64> currentQuestionId() const;
    bool contains(qint64 index) const;

    const Survey survey;
    const QString language;
    const SurveyTexts texts;
    const QList<SurveyQuestion> questions;
    SessionContext context;
    ApplicationLifecycle::Observation willTerminateObserver;
    SurveyPalette palette;
    /// Null where the palette does not follow the host.
    std::unique_ptr<HostAppearance> hostAppearance;
    qint64 currentIndex = 0;
    /// When the current question became that, and when the last page was made: seconds since 1970.
    double currentSince;
    std::optional<double> pageMadeAt;
    bool wasSeen = false;
    bool isOver = false;
};

} // namespace KestrioKit
