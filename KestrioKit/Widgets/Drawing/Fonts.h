#pragma once

#include <QFont>

class QWidget;

namespace KestrioKit {

class SurveyColors;
class WrappedText;

/// The roles that text plays on the survey screens.
enum class TextStyle { title2, body };

/// The font for texts of that style, of the application font's family. Title 2 is bold.
/// Title 2 is 22 and Body 17 device-independent pixels while the application's font has 10 points
/// or less, and both grow with it above.
QFont preferredFont(TextStyle style);

/// Gives `text`, which `view` shows and owns, the font of its style anew whenever `colors` change.
void followFont(QWidget *view, const SurveyColors &colors, WrappedText &text, TextStyle style);

} // namespace KestrioKit
