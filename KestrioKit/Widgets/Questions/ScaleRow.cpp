#include "KestrioKit/Widgets/Questions/ScaleRow.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/ThemedButton.h"
#include "KestrioKit/Widgets/Drawing/Drawing.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>
#include <limits>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr int dividerWidth = KestrioUI::BorderWidth::b1;
constexpr int cornerRadius = KestrioUI::CornerRadius::r5;
constexpr QMargins titleInsets(screenMetrics.scaleTitleInset, screenMetrics.scaleTitleInset,
                               screenMetrics.scaleTitleInset, screenMetrics.scaleTitleInset);
} // namespace Constant

} // namespace

// A fixed height could be undone by a host's style sheet. The size hint cannot.
ScaleRow::ScaleRow(int firstValue, int lastValue, const ButtonFactory &makeButton,
                   const SurveyColors &colors, int height)
    : m_colors(colors), m_height(height) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    for (int value = firstValue; value <= lastValue; ++value) {
        m_buttons.append(makeButton(value));
        m_buttons.last()->setParent(this);
    }
    // The row connects after its buttons, so that they already have the new font.
    connect(&colors, &SurveyColors::changed, this, &ScaleRow::layOut);
}

void ScaleRow::layOut() {
    QPainterPath frame;
    frame.addRoundedRect(rect(), Constant::cornerRadius, Constant::cornerRadius);
    const int count = int(m_buttons.size());
    const int room = width() - Constant::dividerWidth * (count - 1);
    for (int position = 0; position < count; ++position) {
        const int left = room * position / count;
        const int right = room * (position + 1) / count;
        const QRect place(left + Constant::dividerWidth * position, 0, right - left, height());
        m_buttons[position]->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
        m_buttons[position]->setBackgroundShape(frame);
    }
    sizeTitles();
}

// All titles have the same size, given by the button with the least space.
void ScaleRow::sizeTitles() {
    int size = std::numeric_limits<int>::max();
    for (const ThemedButton *const button : m_buttons)
        size =
            std::min(size, button->titleSizeWithin(button->size().shrunkBy(Constant::titleInsets)));
    for (ThemedButton *const button : m_buttons)
        button->setTitleSize(size);
}

bool ScaleRow::event(QEvent *event) {
    if (event->type() == QEvent::LayoutDirectionChange)
        layOut();
    return QWidget::event(event);
}

void ScaleRow::resizeEvent(QResizeEvent *) {
    layOut();
}

void ScaleRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    for (qsizetype position = 1; position < m_buttons.size(); ++position) {
        const int edge = isMirrored ? m_buttons[position - 1]->x() : m_buttons[position]->x();
        const QRectF place(edge - Constant::dividerWidth, 0, Constant::dividerWidth, height());
        QRectF divider = sharpRect(painter, place);
        divider.setWidth(sharpWidth(painter, Constant::dividerWidth));
        painter.fillRect(divider, m_colors->controlBorder);
    }
    drawRoundedBorder(painter, rect(), Constant::cornerRadius, KestrioUI::BorderWidth::b1,
                      m_colors->controlBorder);
}

} // namespace KestrioKit
