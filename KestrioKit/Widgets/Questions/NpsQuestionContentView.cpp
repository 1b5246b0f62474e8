#include "KestrioKit/Widgets/Questions/NpsQuestionContentView.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

namespace NpsAccessibility {
constexpr auto option_zero = "Option 0"_L1;
constexpr auto option_one = "Option 1"_L1;
constexpr auto option_two = "Option 2"_L1;
constexpr auto option_three = "Option 3"_L1;
constexpr auto option_four = "Option 4"_L1;
constexpr auto option_five = "Option 5"_L1;
constexpr auto option_six = "Option 6"_L1;
constexpr auto option_seven = "Option 7"_L1;
constexpr auto option_eight = "Option 8"_L1;
constexpr auto option_nine = "Option 9"_L1;
constexpr auto option_ten = "Option 10"_L1;

QStringList all() {
    return {option_zero, option_one,   option_two,   option_three, option_four, option_five,
            option_six,  option_seven, option_eight, option_nine,  option_ten};
}
} // namespace NpsAccessibility

} // namespace

NpsQuestionContentView::NpsQuestionContentView(const SurveyQuestion &question,
                                               const SurveyTexts &texts, const SurveyColors &colors)
    : ScaleQuestionContentView(question, texts, colors,
                               numberButtons(question, colors, NpsAccessibility::all())) {}

} // namespace KestrioKit
