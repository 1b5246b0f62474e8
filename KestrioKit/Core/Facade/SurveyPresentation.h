#pragma once

#include "KestrioKit/Core/Platform/Threads/Executor.h"
#include "KestrioKit/Core/Service/KestrioService.h"
#include "KestrioKit/Core/Session/SurveySessionPrivate.h"
#include "KestrioKit/Core/Survey/Survey.h"
#include "KestrioKit/SurveyAppearance.h"

#include <QColor>
#include <QObject>

#include <memory>
#include <variant>

namespace KestrioKit {

/// What a survey needs to be shown.
struct PresentationContext {
    /// Must outlive the survey.
    const Clock &clock;
    std::shared_ptr<KestrioService> api;
    QColor themeColor;
    /// Must not be `service`.
    SurveyAppearance appearance = SurveyAppearance::light;
    SessionObserver observer = {};
};

/// Sets the language of the library's texts to that of the survey, or to English if it names none.
void speakLanguage(const Survey &survey);

/// Begins `survey` and returns its session, or the reason why that is impossible. In that case
/// nothing is reported to the service. Must be called on the main thread.
std::variant<std::unique_ptr<SurveySession>, QString> startSession(const Survey &survey,
                                                                   PresentationContext context);

/// Shows `survey` over `from`. Returns the reason if that is impossible. In that case nothing is
/// shown or reported. Must be called on the main thread.
std::optional<QString> presentSpecifiedSurvey(const Survey &survey, QObject *from,
                                              PresentationContext context);

} // namespace KestrioKit
