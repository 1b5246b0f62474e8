#include "KestrioKit/Widgets/Controls/ThemedButton.h"

#include "KestrioKit/Widgets/Drawing/Drawing.h"
#include "KestrioKit/Widgets/Drawing/Fonts.h"
#include "KestrioKit/Widgets/Drawing/KestrioUI.h"

#include <QPainter>
#include <QStyle>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr float tintAlpha = 0.3F;
} // namespace Constant

} // namespace

ThemedButton::ThemedButton(const QString &title, const Look &look)
    : Button(title), m_title(title, preferredFont(TextStyle::body)), m_look(look) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

void ThemedButton::setThemeColor(const std::optional<QColor> &color) {
    m_themeColor = color;
    update();
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
    if (m_isTinted && m_themeColor)
        drawBackground(painter);
    drawTitle(painter);
    if (m_look.borderWidth > 0 && m_themeColor)
        drawRoundedBorder(painter, rect(), m_look.cornerRadius, m_look.borderWidth, *m_themeColor);
    if (isFocusVisible())
        drawFocusRing(painter, rect(), m_look.cornerRadius,
                      m_themeColor.value_or(KestrioUI::Color::defaultTheme()));
}

void ThemedButton::drawBackground(QPainter &painter) const {
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_look.cornerRadius, m_look.cornerRadius);
    if (m_backgroundShape)
        shape = shape.intersected(m_backgroundShape->translated(-pos()));
    QColor tint = *m_themeColor;
    tint.setAlphaF(Constant::tintAlpha);
    painter.fillPath(shape, tint);
}

void ThemedButton::drawTitle(QPainter &painter) const {
    const QRect area = rect().marginsRemoved(m_look.insets);
    const int height = m_title.heightForWidth(area.width());
    const QRect middle(area.x(), area.y() + (area.height() - height) / 2, area.width(), height);
    m_title.draw(painter, middle, KestrioUI::Color::text(),
                 QStyle::visualAlignment(layoutDirection(), m_look.alignment));
}

} // namespace KestrioKit
