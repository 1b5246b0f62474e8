#pragma once

#include <QFont>

class QWidget;

namespace KestrioKit {

class SurveyColors;
class WrappedText;

/// The text styles of the survey screens: titles and everything else.
enum class TextStyle { title2, body };

/// Returns the font of a text style, in the family of the application's font. Title 2 is bold and
/// 22 device-independent pixels high, body is 17. Both grow in proportion if the application's font
/// is larger than 10 points.
QFont preferredFont(TextStyle style);

/// Updates the font of `text` whenever `colors` emits `changed()`. `view` must own `text`.
void followFont(QWidget *view, const SurveyColors &colors, WrappedText &text, TextStyle style);

} // namespace KestrioKit
