#include "KestrioKit/Widgets/Questions/LikertQuestionContentView.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

namespace LikertAccessibility {
constexpr auto option_one = "Option 1"_L1;
constexpr auto option_two = "Option 2"_L1;
constexpr auto option_three = "Option 3"_L1;
constexpr auto option_four = "Option 4"_L1;
constexpr auto option_five = "Option 5"_L1;

QStringList all() {
    return {option_one, option_two, option_three, option_four, option_five};
}
} // namespace LikertAccessibility

} // namespace

LikertQuestionContentView::LikertQuestionContentView(const SurveyQuestion &question,
                                                     const SurveyTexts &texts,
                                                     const SurveyColors &colors)
    : ScaleQuestionContentView(question, texts, colors,
                               numberButtons(question, colors, LikertAccessibility::all())) {}

} // namespace KestrioKit
