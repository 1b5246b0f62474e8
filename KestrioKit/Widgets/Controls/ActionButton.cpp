#include "KestrioKit/Widgets/Controls/ActionButton.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Widgets/Drawing/Drawing.h"

#include <QPainter>
#include <QPainterPath>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr QMargins buttonInsets(KestrioUI::Padding::regular, KestrioUI::Padding::tiny,
                                KestrioUI::Padding::regular, KestrioUI::Padding::tiny);
} // namespace Constant

} // namespace

ActionButton::ActionButton(const QString &title, const SurveyColors &colors)
    : TitledButton(title, colors, Constant::buttonInsets) {}

void ActionButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(rect(), KestrioUI::CornerRadius::r3, KestrioUI::CornerRadius::r3);
    painter.fillPath(shape, colors()->accent);
    if (isHighlighted())
        painter.fillPath(shape, colors()->pressedShade);
    drawTitle(painter, colors()->textOnAccent, Qt::AlignHCenter);
    if (isFocusVisible())
        drawFocusRing(painter, rect(), KestrioUI::CornerRadius::r3, colors()->textOnAccent);
}

} // namespace KestrioKit
