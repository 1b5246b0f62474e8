#include "KestrioKit/Core/Session/SurveyPalettes.h"

#include "KestrioKit/Core/Session/Contrast.h"

#include <QGuiApplication>

namespace KestrioKit {

namespace {

constexpr float tintAlpha = 0.3F;
constexpr float pressedShadeAlpha = 0.2F;
constexpr float dimmingAlpha = 0.6F;
/// The contrast that thin lines need on a tinted card to keep the minimum contrast when
/// antialiased.
constexpr double lineContrast = 3.5;
/// How far to mix the text's colour with the card's if the host's palette has no colour for the
/// role.
constexpr double paleness = 0.4;

QColor withAlpha(QColor color, float alpha) {
    color.setAlphaF(alpha);
    return color;
}

QColor dimming() {
    return QColor::fromRgbF(0, 0, 0, dimmingAlpha);
}

/// Returns the card's colour tinted with the accent, as strongly as the contrast of the text and
/// symbols on it allows.
QColor tintedCard(const SurveyPalette &palette) {
    constexpr int steps = 30;
    for (int step = steps; step > 0; --step) {
        const QColor tinted = mixed(palette.card, palette.accent, tintAlpha * float(step) / steps);
        if (contrastRatio(palette.text, tinted) >= leastTextContrast &&
            contrastRatio(palette.symbol, tinted) >= lineContrast &&
            contrastRatio(palette.controlBorder, tinted) >= lineContrast)
            return tinted;
    }
    return palette.card;
}

/// Sets the colours that depend on the accent. The accent has the contrast of text, so that
/// controls stay visible on a tinted card.
void setAccent(SurveyPalette &palette, const QColor &accent) {
    palette.accent = shaded(accent, palette.card, leastTextContrast);
    palette.textOnAccent = strongestOn(palette.accent);
    palette.pressedShade = withAlpha(strongestOn(palette.textOnAccent), pressedShadeAlpha);
}

} // namespace

QColor defaultAccent() {
    return QColor::fromRgbF(0, 0, 0);
}

SurveyPalette lightPalette(const QColor &accent) {
    SurveyPalette palette;
    palette.card = Qt::white;
    palette.cardBorder = Qt::transparent;
    palette.text = QColor::fromRgbF(0.15F, 0.13F, 0.21F);
    palette.secondaryText = QColor::fromRgbF(0.69F, 0.69F, 0.69F);
    palette.symbol = palette.secondaryText;
    palette.controlBorder = accent;
    palette.focusRing = accent;
    palette.accent = accent;
    palette.textOnAccent = Qt::white;
    palette.pressedShade = QColor::fromRgbF(0, 0, 0, pressedShadeAlpha);
    palette.pressedAnswer = withAlpha(accent, tintAlpha);
    palette.dot = QColor::fromRgbF(0.8F, 0.8F, 0.8F);
    palette.dimming = dimming();
    palette.keepsContrast = false;
    return palette;
}

SurveyPalette darkPalette(const QColor &accent) {
    SurveyPalette palette;
    palette.card = QColor(0x24, 0x22, 0x2C);
    palette.cardBorder = QColor(0x76, 0x72, 0x7F);
    palette.text = QColor(0xF3, 0xF1, 0xF8);
    palette.secondaryText = QColor(0xB8, 0xB4, 0xC4);
    palette.symbol = QColor(0x9D, 0x99, 0xAB);
    palette.focusRing = palette.text;
    palette.dot = QColor(0x76, 0x72, 0x7F);
    palette.dimming = dimming();
    setAccent(palette, accent);
    palette.controlBorder = palette.accent;
    palette.pressedAnswer = tintedCard(palette);
    return palette;
}

SurveyPalette systemPalette(const QPalette &host, const QColor &accent) {
    const auto color = [&host](QPalette::ColorRole role) {
        return host.color(QPalette::Active, role);
    };
    SurveyPalette palette;
    palette.card = QColor(color(QPalette::Window).rgb());
    const auto onCard = [&palette](const QColor &ink, double leastRatio) {
        return shaded(mixed(palette.card, ink, ink.alphaF()), palette.card, leastRatio);
    };
    palette.text = onCard(color(QPalette::WindowText), leastTextContrast);
    palette.secondaryText = onCard(color(QPalette::PlaceholderText), leastTextContrast);
    const QColor pale = mixed(palette.text, palette.card, paleness);
    palette.symbol = onCard(pale, leastTextContrast);
    palette.controlBorder = palette.symbol;
    palette.cardBorder = palette.symbol;
    palette.focusRing = palette.text;
    palette.dot = onCard(mixed(palette.card, pale, paleness), leastSymbolContrast);
    palette.dimming = dimming();
    setAccent(palette, accent);
    palette.pressedAnswer = tintedCard(palette);
    return palette;
}

SurveyPalette paletteFor(SurveyAppearance appearance, const QColor &accent) {
    if (appearance == SurveyAppearance::dark)
        return darkPalette(accent);
    const bool hasHost = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    if (appearance == SurveyAppearance::system && hasHost)
        return systemPalette(QGuiApplication::palette(), accent);
    return lightPalette(accent);
}

} // namespace KestrioKit
