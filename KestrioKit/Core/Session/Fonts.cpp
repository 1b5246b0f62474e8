#include "KestrioKit/Core/Session/Fonts.h"

#include <QFontInfo>
#include <QGuiApplication>

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
    // QFontInfo converts the size to points if the host has set it in pixels.
    const qreal growth =
        std::max<qreal>(QFontInfo(applicationFont).pointSizeF() / referencePointSize, 1);
    // Only the family is used. Other attributes of the host's font, such as bold, are not wanted.
    QFont font(applicationFont.families());
    font.setPixelSize(qRound(pixelSize(style) * growth));
    font.setBold(style == TextStyle::title2);
    return font;
}

} // namespace KestrioKit
