#include "KestrioKit/Core/Session/SurveyForms.h"

#include <cmath>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

using Answer = std::optional<CodableDynamicType>;

/// The first and last number of a scale.
struct Scale {
    int first;
    int last;
};
constexpr Scale likertScale{1, 5};
constexpr Scale netPromoterScale{0, 10};

Labels netPromoterLabels() {
    return {u"Not at all likely"_s, u"Extremely likely"_s};
}

SurveyQuestion::Type typeOf(const QuestionType &type) {
    switch (type.kind) {
    case QuestionType::other:
        return SurveyQuestion::Type::Other;
    case QuestionType::open:
        return SurveyQuestion::Type::Open;
    case QuestionType::likert:
        return SurveyQuestion::Type::Likert;
    case QuestionType::multipleChoice:
        return SurveyQuestion::Type::MultipleChoice;
    case QuestionType::multiSelect:
        return SurveyQuestion::Type::MultiSelect;
    case QuestionType::nps:
        return SurveyQuestion::Type::Nps;
    }
    Q_UNREACHABLE();
}

void setScale(SurveyQuestion &question, Scale scale, const Labels &labels) {
    question.firstValue = scale.first;
    question.lastValue = scale.last;
    question.firstLabel = labels.left;
    question.lastLabel = labels.right;
}

SurveyQuestion questionToShow(const Question &question) {
    const Details &details = question.details;
    SurveyQuestion shown;
    shown.type = typeOf(question.type);
    shown.text = details.text;
    if (shown.type == SurveyQuestion::Type::Likert)
        setScale(shown, likertScale, details.labels.value_or(Labels()));
    else if (shown.type == SurveyQuestion::Type::Nps)
        setScale(shown, netPromoterScale, details.labels.value_or(netPromoterLabels()));
    if (shown.type != SurveyQuestion::Type::MultipleChoice &&
        shown.type != SurveyQuestion::Type::MultiSelect)
        return shown;
    for (const Option &option : details.options.value_or(QList<Option>())) {
        SurveyOption shownOption;
        shownOption.id = option.id;
        shownOption.label = option.label;
        shownOption.value = option.value;
        shown.options.append(shownOption);
    }
    return shown;
}

// QML may pass whole numbers as floating-point numbers.
Answer numberOnScale(const SurveyQuestion &question, const QVariant &value) {
    const int type = value.typeId();
    if (type != QMetaType::Int && type != QMetaType::LongLong && type != QMetaType::Double)
        return std::nullopt;
    const double number = value.toDouble();
    if (std::trunc(number) != number || number < question.firstValue || number > question.lastValue)
        return std::nullopt;
    return CodableDynamicType::intValue(qint64(number));
}

std::optional<QVariantMap> mapIn(const QVariant &value) {
    if (!value.canConvert<QVariantMap>())
        return std::nullopt;
    return value.value<QVariantMap>();
}

const SurveyOption *optionWithId(const SurveyQuestion &question, const QString &id) {
    for (const SurveyOption &option : question.options) {
        if (option.id && QString::number(*option.id) == id)
            return &option;
    }
    return nullptr;
}

Answer oneOption(const SurveyQuestion &question, const QVariant &value) {
    const std::optional<QVariantMap> map = mapIn(value);
    if (!map || map->size() != 1)
        return std::nullopt;
    const QString id = map->firstKey();
    for (const SurveyOption &option : question.options) {
        if (option.id && QString::number(*option.id) == id && option.value == map->first())
            return CodableDynamicType::dictStringValue({{id, option.value}});
    }
    return std::nullopt;
}

Answer anyOptions(const SurveyQuestion &question, const QVariant &value) {
    const std::optional<QVariantMap> map = mapIn(value);
    if (!map)
        return std::nullopt;
    CodableDynamicType::DictBoolValue chosen;
    for (auto entry = map->begin(); entry != map->end(); ++entry) {
        if (entry->typeId() != QMetaType::Bool || !optionWithId(question, entry.key()))
            return std::nullopt;
        if (entry->toBool())
            chosen.insert(entry.key(), true);
    }
    return CodableDynamicType::dictBoolValue(chosen);
}

} // namespace

SurveyTexts textsToShow(const AnyLanguageBundle &bundle) {
    SurveyTexts texts;
    texts.close = bundle.localizedString(u"Close"_s);
    texts.placeholder = bundle.localizedString(u"I think that..."_s);
    texts.thanks = bundle.localizedString(u"Thanks!"_s);
    texts.positionPattern = bundle.localizedString(u"%1 of %2"_s);
    return texts;
}

QList<SurveyQuestion> questionsToShow(const QList<Question> &questions,
                                      const AnyLanguageBundle &bundle) {
    QList<SurveyQuestion> shown;
    for (const Question &question : questions) {
        shown.append(questionToShow(question));
        const bool isLast = shown.size() == questions.size();
        shown.last().actionText = bundle.localizedString(isLast ? u"Finish"_s : u"Next"_s);
    }
    return shown;
}

Answer answerTo(const SurveyQuestion &question, const QVariant &value) {
    switch (question.type) {
    case SurveyQuestion::Type::Other:
        return std::nullopt;
    case SurveyQuestion::Type::Open:
        if (value.typeId() != QMetaType::QString)
            return std::nullopt;
        return CodableDynamicType::stringValue(value.toString());
    case SurveyQuestion::Type::Likert:
    case SurveyQuestion::Type::Nps:
        return numberOnScale(question, value);
    case SurveyQuestion::Type::MultipleChoice:
        return oneOption(question, value);
    case SurveyQuestion::Type::MultiSelect:
        return anyOptions(question, value);
    }
    Q_UNREACHABLE();
}

} // namespace KestrioKit
