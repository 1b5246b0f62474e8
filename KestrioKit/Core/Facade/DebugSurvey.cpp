#include "KestrioKit/Core/Facade/DebugSurvey.h"

#include <QUuid>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 unit = 2;
constexpr qint64 debugSurveyId = 123;
constexpr QLatin1StringView debugLocale("en");

QList<Option> colors() {
    return {{std::nullopt, u"Red"_s, u"red"_s},
            {std::nullopt, u"Green"_s, u"green"_s},
            {std::nullopt, u"Blue"_s, u"blue"_s}};
}

Question question(qint64 name, QuestionType::Kind kind, const QString &text) {
    Question made;
    made.unit = unit;
    made.name = name;
    made.type.kind = kind;
    made.details.text = text;
    return made;
}

} // namespace

Survey debugSurvey() {
    Question howMany = question(0, QuestionType::likert, u"How many?"_s);
    howMany.details.labels = Labels{u"A few"_s, u"A lot"_s};
    Question whichOnes = question(1, QuestionType::multipleChoice, u"Which ones?"_s);
    whichOnes.details.options = colors();
    Question all = question(1, QuestionType::multiSelect, u"Choose all that apply"_s);
    all.details.options = colors();
    const Question why = question(2, QuestionType::open, u"Why?"_s);

    Survey survey;
    survey.unit = unit;
    survey.visitorIdentifier = 0;
    survey.questions = {howMany, whichOnes, all, why};
    survey.delay = 0;
    survey.surveyId = debugSurveyId;
    survey.responseGroupUid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    survey.locale = debugLocale;
    return survey;
}

} // namespace KestrioKit
