#include "KestrioKit/Widgets/Drawing/FollowFont.h"

#include "KestrioKit/Core/Session/WrappedText.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

void followFont(QWidget *view, const SurveyColors &colors, WrappedText &text, TextStyle style) {
    QObject::connect(&colors, &SurveyColors::changed, view,
                     [&text, style] { text.setFont(preferredFont(style)); });
}

} // namespace KestrioKit
