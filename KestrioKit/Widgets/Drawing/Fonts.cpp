#include "KestrioKit/Widgets/Drawing/Fonts.h"

#include "KestrioKit/Widgets/Drawing/SurveyColors.h"
#include "KestrioKit/Widgets/Drawing/WrappedText.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QWidget>

#include <algorithm>

namespace KestrioKit {

namespace {

constexpr qreal referencePointSize = 10;
constexpr int title2PixelSize = 22;
constexpr int bodyPixelSize = 17;

int pixelSize(TextStyle style) {
    return style == TextStyle::title2 ? title2PixelSize : bodyPixelSize;
}

} // namespace

QFont preferredFont(TextStyle style) {
    const QFont applicationFont = QGuiApplication::font();
    // Resolved, because the host may have given its font's size in pixels.
    const qreal growth =
        std::max<qreal>(QFontInfo(applicationFont).pointSizeF() / referencePointSize, 1);
    // The family alone: whatever else the host's font is, bold say, is not for a survey.
    QFont font(applicationFont.families());
    font.setPixelSize(qRound(pixelSize(style) * growth));
    font.setBold(style == TextStyle::title2);
    return font;
}

void followFont(QWidget *view, const SurveyColors &colors, WrappedText &text, TextStyle style) {
    QObject::connect(&colors, &SurveyColors::changed, view,
                     [&text, style] { text.setFont(preferredFont(style)); });
}

} // namespace KestrioKit
