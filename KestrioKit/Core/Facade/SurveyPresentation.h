#pragma once

#include "KestrioKit/Core/Service/KestrioService.h"
#include "KestrioKit/Core/Survey/Survey.h"
#include "KestrioKit/Widgets/Survey/SurveyViewController.h"

#include <QColor>

#include <memory>
#include <optional>

namespace KestrioKit {

/// What a survey on screen works with.
struct PresentationContext {
    /// Outlives the survey.
    const Clock &clock;
    std::shared_ptr<KestrioService> api;
    QColor themeColor;
    /// Holds no survey any more once this one has gone.
    std::weak_ptr<SurveyViewControllerDelegate> delegate;
};

/// Has the library's texts speak the survey's language, English when it names none.
void speakLanguage(const Survey &survey);

/// Shows `survey` over the window of `from`, in its own language. What comes back is why that
/// cannot be; then nothing has been shown or reported. For the main thread.
std::optional<QString> presentSpecifiedSurvey(const Survey &survey, QWidget *from,
                                              const PresentationContext &context);

} // namespace KestrioKit
