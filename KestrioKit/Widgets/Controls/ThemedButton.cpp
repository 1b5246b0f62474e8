#include "KestrioKit/Widgets/Controls/ThemedButton.h"

#include "KestrioKit/Widgets/Drawing/Drawing.h"
#include "KestrioKit/Widgets/Drawing/Fonts.h"
#include "KestrioKit/Widgets/Drawing/KestrioUI.h"

#include <QPainter>
#include <QStyle>

namespace KestrioKit {

ThemedButton::ThemedButton(const QString &title, const SurveyColors &colors, const Look &look)
    : Button(title),
      m_title(title, preferredFont(TextStyle::body)),
      m_colors(colors),
      m_look(look) {
    followFont(this, colors, m_title, TextStyle::body);
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
    m_title.setFontSize(pixels);
    update();
}

int ThemedButton::heightForWidth(int width) const {
    const QMargins &insets = m_look.insets;
    return m_title.heightForWidth(width - insets.left() - insets.right()) + insets.top() +
           insets.bottom();
}

QSize ThemedButton::sizeHint() const {
    const int width = m_title.naturalWidth() + m_look.insets.left() + m_look.insets.right();
    return {width, heightForWidth(width)};
}

void ThemedButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_isTinted)
        drawBackground(painter);
    drawTitle(painter);
    if (m_look.borderWidth > 0)
        drawRoundedBorder(painter, rect(), m_look.cornerRadius, m_look.borderWidth,
                          m_colors->controlBorder);
    if (isFocusVisible())
        drawFocusRing(painter, rect(), m_look.cornerRadius, m_colors->focusRing);
}

void ThemedButton::drawBackground(QPainter &painter) const {
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_look.cornerRadius, m_look.cornerRadius);
    if (m_backgroundShape)
        shape = shape.intersected(m_backgroundShape->translated(-pos()));
    painter.fillPath(shape, m_colors->pressedAnswer);
}

void ThemedButton::drawTitle(QPainter &painter) const {
    const QRect area = rect().marginsRemoved(m_look.insets);
    const int height = m_title.heightForWidth(area.width());
    const QRect middle(area.x(), area.y() + (area.height() - height) / 2, area.width(), height);
    m_title.draw(painter, middle, m_colors->text,
                 QStyle::visualAlignment(layoutDirection(), m_look.alignment));
}

} // namespace KestrioKit
