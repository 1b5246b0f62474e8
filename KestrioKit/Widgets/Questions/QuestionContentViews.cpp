#include "KestrioKit/Widgets/Questions/QuestionContentViews.h"

#include "KestrioKit/Widgets/Questions/LikertQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/MultipleChoiceQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/MultiSelectQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/NpsQuestionContentView.h"
#include "KestrioKit/Widgets/Questions/OpenQuestionContentView.h"

#include <array>

namespace KestrioKit {

namespace {

template <typename View>
QuestionContentContainer *make(const SurveyQuestion &question, const SurveyTexts &texts,
                               const SurveyColors &colors) {
    return new View(question, texts, colors);
}

struct Registration {
    SurveyQuestion::Type type;
    decltype(&makeContentView) make;
};

constexpr std::array registrations{
    Registration{SurveyQuestion::Type::Open, make<OpenQuestionContentView>},
    Registration{SurveyQuestion::Type::Likert, make<LikertQuestionContentView>},
    Registration{SurveyQuestion::Type::MultipleChoice, make<MultipleChoiceQuestionContentView>},
    Registration{SurveyQuestion::Type::MultiSelect, make<MultiSelectQuestionContentView>},
    Registration{SurveyQuestion::Type::Nps, make<NpsQuestionContentView>},
};

} // namespace

QuestionContentContainer *makeContentView(const SurveyQuestion &question, const SurveyTexts &texts,
                                          const SurveyColors &colors) {
    for (const Registration &registration : registrations) {
        if (registration.type == question.type)
            return registration.make(question, texts, colors);
    }
    return nullptr;
}

} // namespace KestrioKit
