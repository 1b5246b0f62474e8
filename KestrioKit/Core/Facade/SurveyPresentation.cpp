#include "KestrioKit/Core/Facade/SurveyPresentation.h"

#include "KestrioKit/Core/Platform/LanguageBundle.h"
#include "KestrioKit/Core/Service/KestrioSurveyResponder.h"

#include <QWidget>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> obstacle(const Survey &survey, const QWidget *from) {
    if (!from)
        return u"There is no widget to show the survey from."_s;
    if (!from->window()->isVisible())
        return u"The window to show the survey over is not shown itself."_s;
    if (SurveyViewController::presented())
        return u"Another survey is being shown."_s;
    if (survey.questions.isEmpty())
        return u"The survey to show has no questions."_s;
    return std::nullopt;
}

} // namespace

void speakLanguage(const Survey &survey) {
    AnyLanguageBundle::framework().setLanguage(languageOf(survey));
}

std::optional<QString> presentSpecifiedSurvey(const Survey &survey, QWidget *from,
                                              const PresentationContext &context) {
    if (std::optional<QString> reason = obstacle(survey, from))
        return reason;
    auto *const controller = new SurveyViewController(
        survey, context.themeColor, std::make_shared<KestrioSurveyResponder>(context.api, survey),
        context.clock);
    controller->setDelegate(context.delegate);
    controller->present(from);
    return std::nullopt;
}

} // namespace KestrioKit
