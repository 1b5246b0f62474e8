#include "KestrioKit/Widgets/Controls/CheckboxButton.h"

#include "KestrioKit/Widgets/Drawing/Drawing.h"
#include "KestrioKit/Widgets/Drawing/Fonts.h"
#include "KestrioKit/Widgets/Drawing/KestrioUI.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

namespace Constant {
constexpr QSize imageSize(16, 16);
constexpr QSize checkboxSize(20, 20);
constexpr int checkboxInset = 1;
constexpr qreal checkboxBorderWidth = 1;
constexpr qreal checkmarkLineWidth = 1;
constexpr QMargins insets(14, 12, 14, 12);
/// Between the image and the label.
constexpr int spacing = KestrioUI::Padding::tiny;
constexpr qreal highlightedAlpha = 0.5;
constexpr auto dissolveDuration = 100ms;
constexpr auto identifierPrefix = "Multi-select option: "_L1;
constexpr auto selectedSuffix = "-selected"_L1;
} // namespace Constant

DrawnImage::Draw drawingOf(const QColor &themeColor, bool isChecked) {
    return [themeColor, isChecked](QPainter &painter) {
        painter.setPen(QPen(themeColor, Constant::checkboxBorderWidth));
        painter.setBrush(isChecked ? themeColor : QColor(Qt::white));
        constexpr int inset = Constant::checkboxInset;
        painter.drawRoundedRect(
            QRectF(QPoint(), Constant::checkboxSize).adjusted(inset, inset, -inset, -inset),
            KestrioUI::CornerRadius::r3, KestrioUI::CornerRadius::r3);
        if (isChecked)
            drawStrokes(painter, {{5, 10}, {9, 14}, {15, 7}}, Constant::checkmarkLineWidth,
                        Qt::white);
    };
}

} // namespace

CheckboxButton::CheckboxButton(const QString &title, const QColor &themeColor)
    : Button(title),
      m_label(title, preferredFont(TextStyle::body)),
      m_themeColor(themeColor),
      m_uncheckedImage(Constant::checkboxSize, drawingOf(themeColor, false)),
      m_checkedImage(Constant::checkboxSize, drawingOf(themeColor, true)) {
    setCheckable(true);
    checkStateSet();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

void CheckboxButton::checkStateSet() {
    delete m_dissolve;
    setObjectName(Constant::identifierPrefix + text() +
                  (isChecked() ? Constant::selectedSuffix : QLatin1StringView()));
    m_checkedAlpha = isChecked() ? 1 : 0;
}

void CheckboxButton::toggleAnimated() {
    const qreal before = m_checkedAlpha;
    toggle();
    m_dissolve = Animation::start(this, AnimationTiming::easing(Constant::dissolveDuration),
                                  [this, before, after = m_checkedAlpha](qreal way) {
                                      m_checkedAlpha = before + (after - before) * way;
                                      update();
                                  });
}

qreal CheckboxButton::alpha() const {
    return isHighlighted() ? Constant::highlightedAlpha : 1;
}

int CheckboxButton::heightForWidth(int width) const {
    const int labelWidth = width - Constant::insets.left() - Constant::imageSize.width() -
                           Constant::spacing - Constant::insets.right();
    return std::max(m_label.heightForWidth(labelWidth), Constant::imageSize.height()) +
           Constant::insets.top() + Constant::insets.bottom();
}

QSize CheckboxButton::sizeHint() const {
    const int width = Constant::insets.left() + Constant::imageSize.width() + Constant::spacing +
                      m_label.naturalWidth() + Constant::insets.right();
    return {width, heightForWidth(width)};
}

void CheckboxButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    drawCheckbox(painter);
    painter.setOpacity(alpha());
    drawLabel(painter);
    drawRoundedBorder(painter, rect(), KestrioUI::CornerRadius::r3, KestrioUI::BorderWidth::b1,
                      m_themeColor);
    if (isFocusVisible())
        drawFocusRing(painter, rect(), KestrioUI::CornerRadius::r3, m_themeColor);
}

void CheckboxButton::drawCheckbox(QPainter &painter) const {
    const QRect area = rect().marginsRemoved(Constant::insets);
    const QPoint middle(area.x(), area.y() + (area.height() - Constant::imageSize.height()) / 2);
    const QRect box =
        QStyle::visualRect(layoutDirection(), rect(), QRect(middle, Constant::imageSize));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(alpha());
    if (m_checkedAlpha < 1)
        painter.drawPixmap(box, m_uncheckedImage.at(devicePixelRatio()));
    painter.setOpacity(alpha() * m_checkedAlpha);
    painter.drawPixmap(box, m_checkedImage.at(devicePixelRatio()));
}

void CheckboxButton::drawLabel(QPainter &painter) const {
    const QRect area = rect().marginsRemoved(Constant::insets);
    QRect label = area.adjusted(Constant::imageSize.width() + Constant::spacing, 0, 0, 0);
    const int height = m_label.heightForWidth(label.width());
    label.adjust(0, (label.height() - height) / 2, 0, 0);
    m_label.draw(painter, QStyle::visualRect(layoutDirection(), rect(), label),
                 KestrioUI::Color::text(),
                 QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft));
}

} // namespace KestrioKit
