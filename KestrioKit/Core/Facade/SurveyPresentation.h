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

/// What a survey on screen works with.
struct PresentationContext {
    /// Outlives the survey.
    const Clock &clock;
    std::shared_ptr<KestrioService> api;
    QColor themeColor;
    /// Not `service`.
    SurveyAppearance appearance = SurveyAppearance::light;
    SessionObserver observer = {};
};

/// Has the library's texts speak the survey's language, English when it names none.
void speakLanguage(const Survey &survey);

/// Begins to answer `survey`. Instead of the session comes the reason why that is impossible; then
/// nothing has been reported. For the main thread.
std::variant<std::unique_ptr<SurveySession>, QString> startSession(const Survey &survey,
                                                                   PresentationContext context);

/// Shows `survey` over `from`. Returns why that is impossible; then nothing has been shown or
/// reported. For the main thread.
std::optional<QString> presentSpecifiedSurvey(const Survey &survey, QObject *from,
                                              PresentationContext context);

} // namespace KestrioKit
