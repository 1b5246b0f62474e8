#include "host/window/DemoPalette.h"

#include <QFontDatabase>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr auto fontFamily = "Inter"_L1;

namespace Colors {
constexpr QColor page(0xf3, 0xf1, 0xec);
constexpr QColor sheet(0xff, 0xff, 0xff);
constexpr QColor ink(0x1f, 0x26, 0x2b);
constexpr QColor faded(0x8b, 0x8f, 0x92);
constexpr QColor accent(0x1d, 0x6b, 0x57);
} // namespace Colors

} // namespace

QPalette demoPalette() {
    QPalette palette(Colors::sheet, Colors::page);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, Colors::ink);
    palette.setColor(QPalette::Base, Colors::sheet);
    palette.setColor(QPalette::PlaceholderText, Colors::faded);
    palette.setColor(QPalette::Highlight, Colors::accent);
    palette.setColor(QPalette::HighlightedText, Colors::sheet);
    return palette;
}

QFont demoFont() {
    QFont font = QGuiApplication::font();
    if (QFontDatabase::hasFamily(fontFamily))
        font.setFamily(fontFamily);
    return font;
}
