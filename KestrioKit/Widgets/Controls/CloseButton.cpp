#include "KestrioKit/Widgets/Controls/CloseButton.h"

#include "KestrioKit/Widgets/Drawing/Drawing.h"
#include "KestrioKit/Widgets/Drawing/KestrioUI.h"

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

void drawCross(QPainter &painter) {
    const QColor color = KestrioUI::Color::inactive();
    drawStrokes(painter, {{8, 8}, {18, 18}}, Constant::lineWidth, color);
    drawStrokes(painter, {{18, 8}, {8, 18}}, Constant::lineWidth, color);
}

} // namespace

CloseButton::CloseButton(const QString &title) : Button(title), m_image(Constant::size, drawCross) {
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
    painter.setOpacity(alpha());
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(rect());
    drawRoundedBorder(painter, rect(), Constant::cornerRadius, KestrioUI::BorderWidth::b1,
                      KestrioUI::Color::inactive());
    painter.drawPixmap(QPoint(), m_image.at(devicePixelRatio()));
    if (isFocusVisible())
        drawFocusRing(painter, rect(), Constant::cornerRadius, KestrioUI::Color::text());
}

} // namespace KestrioKit
