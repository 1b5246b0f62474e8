#include "KestrioKit/Core/Facade/DebugSurvey.h"
#include "KestrioKit/Core/Facade/FacadeLog.h"
#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Core/Platform/Threads/MainThread.h"
#include "KestrioKit/Core/Session/SurveyPalettes.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

using Action = Bootstrap::Action;
using Kind = HeldCall::Kind;

// Only logged, not reported: the reason concerns the host's developer, not the service.
void logRefusal(const QString &reason) {
    logLine(u"More Info: "_s + reason, LogCategory::error);
}

} // namespace

// Surveys on screen

void KestrioCore::presentSurvey(const QPointer<QObject> &from) {
    whenReady({Kind::other, [from](KestrioCore &core) {
                   if (const std::optional<Survey> held = core.survey())
                       core.presentSpecifiedSurvey(*held, from);
                   else
                       logLine(u"No survey found."_s, LogCategory::info);
               }});
}

void KestrioCore::presentSurvey(qint64 surveyId, const QPointer<QObject> &from,
                                const FetchCompletion &fetchCompletion) {
    const auto kept = keptForMain(fetchCompletion);
    whenReady({Kind::other,
               [surveyId, from, kept](KestrioCore &core) {
                   core.fetch(surveyId, [&core, from, kept](const Survey &survey) {
                       if (kept)
                           (*kept)();
                       core.presentSpecifiedSurvey(survey, from);
                   });
               },
               [surveyId, from](KestrioCore &core) {
                   core.presentSurvey(surveyId, from, {});
               }});
}

void KestrioCore::fetch(qint64 surveyId, const std::function<void(const Survey &)> &use) {
    m_api->fetchSurvey(
        surveyId, [self = shared_from_this(), use](const ServiceAnswer<Survey> &answer) {
            if (answer.value)
                DispatchQueue::main().async([self, use, survey = *answer.value] { use(survey); });
        });
}

void KestrioCore::presentDebugSurvey(const QPointer<QObject> &from) {
    if (m_startUp->readyState() != Action::skip)
        presentSpecifiedSurvey(debugSurvey(), from);
}

PresentationContext KestrioCore::presentationContext(const Survey &survey) {
    const ResponseConfig current = config().value_or(ResponseConfig());
    SurveyAppearance appearance = m_appearance;
    if (appearance == SurveyAppearance::service)
        appearance = current.isDark() ? SurveyAppearance::dark : SurveyAppearance::light;
    return {.clock = m_clock,
            .api = m_api,
            .themeColor = current.themeColor().value_or(defaultAccent()),
            .appearance = appearance,
            .observer = sessionObserver(survey.surveyId.value_or(0))};
}

SessionObserver KestrioCore::sessionObserver(qint64 surveyId) {
    const auto self = shared_from_this();
    return {.shown =
                [self, surveyId] {
                    self->announce([=](FacadeObserver &host) { host.surveyShown(surveyId); });
                },
            .questionAnswered =
                [self, surveyId](int index) {
                    self->announce(
                        [=](FacadeObserver &host) { host.questionAnswered(surveyId, index); });
                },
            .ended =
                [self, surveyId](SurveySession::Outcome outcome) {
                    self->announce(
                        [=](FacadeObserver &host) { host.surveyEnded(surveyId, outcome); });
                },
            .gone =
                [self] {
                    self->setSurvey(std::nullopt);
                }};
}

void KestrioCore::presentSpecifiedSurvey(const Survey &survey, const QPointer<QObject> &from) {
    onMain([self = shared_from_this(), survey, from] {
        const std::optional<QString> refusal =
            KestrioKit::presentSpecifiedSurvey(survey, from, self->presentationContext(survey));
        if (refusal)
            logRefusal(*refusal);
    });
}

// Surveys that the host draws itself

std::unique_ptr<SurveySession> KestrioCore::startSurvey() {
    if (const std::optional<Survey> held = survey())
        return startSession(*held);
    logLine(u"No survey found."_s, LogCategory::info);
    return nullptr;
}

void KestrioCore::startSurvey(qint64 surveyId, const std::function<bool()> &isWanted,
                              const SessionReceiver &receiver) {
    const auto kept = keptForMain(receiver);
    whenReady({Kind::other, [surveyId, isWanted, kept](KestrioCore &core) {
                   core.fetch(surveyId, [&core, isWanted, kept](const Survey &survey) {
                       if (!isWanted())
                           return;
                       std::unique_ptr<SurveySession> session = core.startSession(survey);
                       if (session && kept)
                           (*kept)(std::move(session));
                   });
               }});
}

std::unique_ptr<SurveySession> KestrioCore::startDebugSurvey() {
    if (m_startUp->readyState() == Action::skip)
        return nullptr;
    return startSession(debugSurvey());
}

std::unique_ptr<SurveySession> KestrioCore::startSession(const Survey &survey) {
    auto started = KestrioKit::startSession(survey, presentationContext(survey));
    if (const auto *const refusal = std::get_if<QString>(&started)) {
        logRefusal(*refusal);
        return nullptr;
    }
    return std::get<std::unique_ptr<SurveySession>>(std::move(started));
}

} // namespace KestrioKit
