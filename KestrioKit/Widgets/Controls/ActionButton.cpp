#include "KestrioKit/Widgets/Controls/ActionButton.h"

#include "KestrioKit/Widgets/Drawing/Drawing.h"
#include "KestrioKit/Widgets/Drawing/Fonts.h"
#include "KestrioKit/Widgets/Drawing/KestrioUI.h"

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
    : Button(title), m_title(title, preferredFont(TextStyle::body)), m_colors(colors) {
    followFont(this, colors, m_title, TextStyle::body);
}

int ActionButton::heightForWidth(int width) const {
    const QMargins &insets = Constant::buttonInsets;
    return m_title.heightForWidth(width - insets.left() - insets.right()) + insets.top() +
           insets.bottom();
}

QSize ActionButton::sizeHint() const {
    const int width =
        m_title.naturalWidth() + Constant::buttonInsets.left() + Constant::buttonInsets.right();
    return {width, heightForWidth(width)};
}

void ActionButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(rect(), KestrioUI::CornerRadius::r3, KestrioUI::CornerRadius::r3);
    painter.fillPath(shape, m_colors->accent);
    if (isHighlighted())
        painter.fillPath(shape, m_colors->pressedShade);
    m_title.draw(painter, rect().marginsRemoved(Constant::buttonInsets), m_colors->textOnAccent,
                 Qt::AlignHCenter);
    if (isFocusVisible())
        drawFocusRing(painter, rect(), KestrioUI::CornerRadius::r3, m_colors->textOnAccent);
}

} // namespace KestrioKit
