#include "KestrioKit/Widgets/Controls/CloseButton.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Widgets/Drawing/Drawing.h"

#include <QPainter>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

namespace Constant {
constexpr auto accessibilityIdentifier = "Close button"_L1;
constexpr QSize size(26, 26);
constexpr qreal cornerRadius = 13;
constexpr qreal lineWidth = 2;
constexpr qreal highlightedAlpha = 0.3;
} // namespace Constant

void drawCross(QPainter &painter, const QColor &color) {
    drawStrokes(painter, {{8, 8}, {18, 18}}, Constant::lineWidth, color);
    drawStrokes(painter, {{18, 8}, {8, 18}}, Constant::lineWidth, color);
}

} // namespace

CloseButton::CloseButton(const QString &title, const SurveyColors &colors)
    : Button(title), m_colors(colors), m_image(Constant::size, [&colors](QPainter &painter) {
          drawCross(painter, colors->symbol);
      }) {
    connect(&colors, &SurveyColors::changed, this, [this] { m_image.redraw(); });
    setObjectName(Constant::accessibilityIdentifier);
}

QSize CloseButton::sizeHint() const {
    return Constant::size;
}

qreal CloseButton::alpha() const {
    return isHighlighted() ? Constant::highlightedAlpha : 1;
}

void CloseButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isMarked = isHighlighted() && m_colors->keepsContrast;
    painter.setOpacity(isMarked ? 1 : alpha());
    painter.setPen(Qt::NoPen);
    painter.setBrush(isMarked ? m_colors->pressedAnswer : m_colors->card);
    painter.drawEllipse(rect());
    drawRoundedBorder(painter, rect(), Constant::cornerRadius, KestrioUI::BorderWidth::b1,
                      m_colors->symbol);
    painter.drawPixmap(QPoint(), m_image.at(devicePixelRatio()));
    if (isFocusVisible())
        drawFocusRing(painter, rect(), Constant::cornerRadius, m_colors->text);
}

} // namespace KestrioKit
