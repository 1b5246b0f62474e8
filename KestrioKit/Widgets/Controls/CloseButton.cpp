#include "KestrioKit/Widgets/Controls/CloseButton.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/Pictograms.h"
#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Drawing/Drawing.h"

#include <QPainter>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr QSize size(screenMetrics.closeButtonSize, screenMetrics.closeButtonSize);
constexpr qreal cornerRadius = screenMetrics.closeButtonSize / 2.0;
} // namespace Constant

} // namespace

CloseButton::CloseButton(const QString &title, const SurveyColors &colors)
    : Button(title), m_colors(colors), m_image(Constant::size, [&colors](QPainter &painter) {
          drawCross(painter, colors.palette());
      }) {
    connect(&colors, &SurveyColors::changed, this, [this] { m_image.redraw(); });
    setObjectName(screenIdentifiers.closeButton());
}

QSize CloseButton::sizeHint() const {
    return Constant::size;
}

qreal CloseButton::alpha() const {
    return isHighlighted() ? screenMetrics.pressedCloseButtonOpacity : 1;
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
