#include "KestrioKit/Facade/SurveyPresentation.h"

#include "KestrioKit/Platform/LanguageBundle.h"
#include "KestrioKit/Service/KestrioSurveyResponder.h"

#include <QWidget>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

Error presentationError(PresentationObstacle obstacle, const QString &reason) {
    return {presentationErrorDomain, int(obstacle), reason};
}

std::optional<Error> obstacle(const Survey &survey, const QWidget *from) {
    if (!from)
        return presentationError(PresentationObstacle::noPresenter,
                                 u"There is no widget to show the survey from."_s);
    if (!from->window()->isVisible())
        return presentationError(PresentationObstacle::windowNotShown,
                                 u"The window to show the survey over is not shown itself."_s);
    if (SurveyViewController::presented())
        return presentationError(PresentationObstacle::alreadyPresenting,
                                 u"Another survey is being shown."_s);
    if (survey.questions.isEmpty())
        return presentationError(PresentationObstacle::noQuestions,
                                 u"The survey to show has no questions."_s);
    return std::nullopt;
}

} // namespace

void speakLanguage(const Survey &survey) {
    AnyLanguageBundle::framework().setLanguage(languageOf(survey));
}

std::optional<Error> presentSpecifiedSurvey(const Survey &survey, QWidget *from,
                                            const PresentationContext &context) {
    if (std::optional<Error> error = obstacle(survey, from))
        return error;
    auto *const controller = new SurveyViewController(
        survey, context.themeColor, std::make_shared<KestrioSurveyResponder>(context.api, survey),
        context.clock);
    controller->setDelegate(context.delegate);
    controller->present(from);
    return std::nullopt;
}

} // namespace KestrioKit
