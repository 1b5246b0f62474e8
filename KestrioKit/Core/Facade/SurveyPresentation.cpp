#include "KestrioKit/Core/Facade/SurveyPresentation.h"

#include "KestrioKit/Core/Platform/LanguageBundle.h"
#include "KestrioKit/Core/Session/FrontEnd.h"
#include "KestrioKit/Core/Session/SurveySessionPrivate.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> obstacle(const Survey &survey, const PresentationContext &context) {
    if (context.api->isWithdrawn())
        return u"The visitor's consent has been withdrawn."_s;
    if (SurveySessionPrivate::existing())
        return u"Another survey is being shown."_s;
    if (survey.questions.isEmpty())
        return u"The survey to show has no questions."_s;
    return std::nullopt;
}

QString noFrontEnd(const QObject &host) {
    const bool isQuick = host.inherits("QQuickWindow") || host.inherits("QQuickItem");
    const QString advice =
        isQuick ? u"link KestrioKit::Quick to show surveys over a window of Qt Quick"_s
                : u"link KestrioKit::Widgets to show surveys over a QWidget"_s;
    return u"Nothing that is linked can show a survey over a %1: %2."_s.arg(
        QString::fromLatin1(host.metaObject()->className()), advice);
}

std::unique_ptr<SurveySession> makeSession(const Survey &survey, PresentationContext context) {
    return SurveySessionPrivate::make(
        survey,
        {.clock = context.clock,
         .themeColor = context.themeColor,
         .appearance = context.appearance,
         .responder = std::make_unique<KestrioSurveyResponder>(std::move(context.api), survey),
         .observer = std::move(context.observer)});
}

} // namespace

void speakLanguage(const Survey &survey) {
    AnyLanguageBundle::framework().setLanguage(languageOf(survey));
}

std::variant<std::unique_ptr<SurveySession>, QString> startSession(const Survey &survey,
                                                                   PresentationContext context) {
    if (const std::optional<QString> reason = obstacle(survey, context))
        return *reason;
    return makeSession(survey, std::move(context));
}

std::optional<QString> presentSpecifiedSurvey(const Survey &survey, QObject *from,
                                              PresentationContext context) {
    if (!from)
        return u"There is no widget to show the survey from."_s;
    FrontEnd *const frontEnd = FrontEnd::suitableFor(*from);
    if (!frontEnd)
        return noFrontEnd(*from);
    if (std::optional<QString> reason = frontEnd->obstacle(*from))
        return reason;
    if (std::optional<QString> reason = obstacle(survey, context))
        return reason;
    const Clock &clock = context.clock;
    frontEnd->show(makeSession(survey, std::move(context)), *from, clock);
    return std::nullopt;
}

} // namespace KestrioKit
