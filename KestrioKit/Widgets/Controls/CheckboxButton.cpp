#include "KestrioKit/Widgets/Controls/CheckboxButton.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/Pictograms.h"
#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Drawing/Animate.h"
#include "KestrioKit/Widgets/Drawing/Drawing.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr QSize imageSize(screenMetrics.checkBoxSize, screenMetrics.checkBoxSize);
constexpr QSize checkboxSize(screenMetrics.checkBoxDrawingSize, screenMetrics.checkBoxDrawingSize);
constexpr QMargins insets(screenMetrics.optionHorizontalInset, screenMetrics.optionVerticalInset,
                          screenMetrics.optionHorizontalInset, screenMetrics.optionVerticalInset);
/// Distance between the image and the title.
constexpr int spacing = KestrioUI::Padding::tiny;
constexpr QMargins titleInsets = insets + QMargins(imageSize.width() + spacing, 0, 0, 0);
} // namespace Constant

DrawnImage::Draw drawingOf(const SurveyColors &colors, bool isChecked) {
    return [&colors, isChecked](QPainter &painter) {
        drawCheckBox(painter, colors.palette(), isChecked);
    };
}

} // namespace

CheckboxButton::CheckboxButton(const QString &title, const SurveyColors &colors)
    : TitledButton(title, colors, Constant::titleInsets, Constant::imageSize.height()),
      m_uncheckedImage(Constant::checkboxSize, drawingOf(colors, false)),
      m_checkedImage(Constant::checkboxSize, drawingOf(colors, true)) {
    connect(&colors, &SurveyColors::changed, this, [this] {
        m_uncheckedImage.redraw();
        m_checkedImage.redraw();
    });
    setCheckable(true);
    checkStateSet();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

void CheckboxButton::checkStateSet() {
    delete m_dissolve;
    setObjectName(screenIdentifiers.multiSelectOption(text(), isChecked()));
    m_checkedAlpha = isChecked() ? 1 : 0;
}

void CheckboxButton::toggleAnimated() {
    const qreal before = m_checkedAlpha;
    toggle();
    m_dissolve = animate(this, AnimationTiming::easing(screenMetrics.check),
                         [this, before, after = m_checkedAlpha](qreal way) {
                             m_checkedAlpha = before + (after - before) * way;
                             update();
                         });
}

qreal CheckboxButton::alpha() const {
    return isHighlighted() ? screenMetrics.pressedCheckBoxOpacity : 1;
}

qreal CheckboxButton::opacity() const {
    return colors()->keepsContrast ? 1 : alpha();
}

void CheckboxButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    if (isHighlighted() && colors()->keepsContrast)
        drawPressed(painter);
    drawCheckbox(painter);
    painter.setOpacity(opacity());
    drawTitle(painter, colors()->text, Qt::AlignLeft);
    drawRoundedBorder(painter, rect(), KestrioUI::CornerRadius::r3, KestrioUI::BorderWidth::b1,
                      colors()->controlBorder);
    if (isFocusVisible())
        drawFocusRing(painter, rect(), KestrioUI::CornerRadius::r3, colors()->focusRing);
}

void CheckboxButton::drawPressed(QPainter &painter) const {
    QPainterPath shape;
    shape.addRoundedRect(rect(), KestrioUI::CornerRadius::r3, KestrioUI::CornerRadius::r3);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, colors()->pressedAnswer);
}

void CheckboxButton::drawCheckbox(QPainter &painter) const {
    const QRect area = rect().marginsRemoved(Constant::insets);
    const QPoint middle(area.x(), area.y() + (area.height() - Constant::imageSize.height()) / 2);
    const QRect box =
        QStyle::visualRect(layoutDirection(), rect(), QRect(middle, Constant::imageSize));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(opacity());
    if (m_checkedAlpha < 1)
        painter.drawPixmap(box, m_uncheckedImage.at(devicePixelRatio()));
    painter.setOpacity(opacity() * m_checkedAlpha);
    painter.drawPixmap(box, m_checkedImage.at(devicePixelRatio()));
}

} // namespace KestrioKit
