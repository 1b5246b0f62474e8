#include "KestrioKit/Widgets/Questions/LabelRow.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Widgets/Controls/Label.h"

#include <QStyle>

#include <algorithm>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr int spacing = KestrioUI::Padding::tiny;
} // namespace Constant

Label *makeLabel(const QString &text, const SurveyColors &colors, Qt::Alignment alignment,
                 QWidget *parent) {
    auto *const label = new Label(text, TextStyle::body, colors, &SurveyPalette::text, alignment);
    label->setParent(parent);
    return label;
}

} // namespace

LabelRow::LabelRow(const QString &left, const QString &right, const SurveyColors &colors)
    : m_left(makeLabel(left, colors, Qt::AlignLeft, this)),
      m_right(makeLabel(right, colors, Qt::AlignRight, this)) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    connect(&colors, &SurveyColors::changed, this, &LabelRow::layOut);
}

// A label that needs less than half of the row leaves the rest to the other label.
LabelRow::Widths LabelRow::widthsWithin(int width) const {
    const int room = std::max(width - Constant::spacing, 0);
    const int left = m_left->naturalWidth();
    const int right = m_right->naturalWidth();
    if (left + right <= room || right <= room / 2)
        return {room - right, right};
    if (left <= room / 2)
        return {left, room - left};
    return {room / 2, room - room / 2};
}

int LabelRow::heightForWidth(int width) const {
    const Widths widths = widthsWithin(width);
    return std::max(m_left->heightForWidth(widths.left), m_right->heightForWidth(widths.right));
}

QSize LabelRow::sizeHint() const {
    const int width = m_left->naturalWidth() + Constant::spacing + m_right->naturalWidth();
    return {width, heightForWidth(width)};
}

bool LabelRow::event(QEvent *event) {
    if (event->type() == QEvent::LayoutDirectionChange)
        layOut();
    return QWidget::event(event);
}

void LabelRow::resizeEvent(QResizeEvent *) {
    layOut();
}

void LabelRow::layOut() {
    const Widths widths = widthsWithin(width());
    const QRect left(0, 0, widths.left, height());
    const QRect right(width() - widths.right, 0, widths.right, height());
    m_left->setGeometry(QStyle::visualRect(layoutDirection(), rect(), left));
    m_right->setGeometry(QStyle::visualRect(layoutDirection(), rect(), right));
}

} // namespace KestrioKit
