#include "KestrioKit/Widgets/Controls/ThemedButton.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Widgets/Drawing/Drawing.h"

#include <QPainter>

namespace KestrioKit {

ThemedButton::ThemedButton(const QString &title, const SurveyColors &colors, const Look &look)
    : TitledButton(title, colors, look.insets), m_look(look) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

void ThemedButton::setSelected(bool isSelected) {
    setTinted(isSelected);
}

void ThemedButton::highlightedChanged() {
    setTinted(isHighlighted());
}

void ThemedButton::setTinted(bool isTinted) {
    m_isTinted = isTinted;
    update();
}

void ThemedButton::setBackgroundShape(const QPainterPath &shape) {
    m_backgroundShape = shape;
    update();
}

void ThemedButton::setTitleSize(int pixels) {
    title().setFontSize(pixels);
    update();
}

void ThemedButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_isTinted)
        drawBackground(painter);
    drawTitle(painter, colors()->text, m_look.alignment);
    if (m_look.borderWidth > 0)
        drawRoundedBorder(painter, rect(), m_look.cornerRadius, m_look.borderWidth,
                          colors()->controlBorder);
    if (isFocusVisible())
        drawFocusRing(painter, rect(), m_look.cornerRadius, colors()->focusRing);
}

void ThemedButton::drawBackground(QPainter &painter) const {
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_look.cornerRadius, m_look.cornerRadius);
    if (m_backgroundShape)
        shape = shape.intersected(m_backgroundShape->translated(-pos()));
    painter.fillPath(shape, colors()->pressedAnswer);
}

} // namespace KestrioKit
