#pragma once

#include "KestrioKit/Core/Session/Fonts.h"

class QWidget;

namespace KestrioKit {

class SurveyColors;
class WrappedText;

/// Updates the font of `text` whenever `colors` emits `changed()`. `view` must own `text`.
void followFont(QWidget *view, const SurveyColors &colors, WrappedText &text, TextStyle style);

} // namespace KestrioKit
