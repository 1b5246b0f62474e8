#include "KestrioKit/Widgets/Controls/TitledButton.h"

#include "KestrioKit/Widgets/Drawing/FollowFont.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace KestrioKit {

TitledButton::TitledButton(const QString &text, const SurveyColors &colors, const QMargins &insets,
                           int leastTitleHeight)
    : Button(text),
      m_title(text, preferredFont(TextStyle::body)),
      m_colors(colors),
      m_insets(insets),
      m_leastTitleHeight(leastTitleHeight) {
    followFont(this, colors, m_title, TextStyle::body);
}

int TitledButton::heightForWidth(int width) const {
    const int room = width - m_insets.left() - m_insets.right();
    return std::max(m_title.heightForWidth(room), m_leastTitleHeight) + m_insets.top() +
           m_insets.bottom();
}

QSize TitledButton::sizeHint() const {
    const int width = m_title.naturalWidth() + m_insets.left() + m_insets.right();
    return {width, heightForWidth(width)};
}

void TitledButton::drawTitle(QPainter &painter, const QColor &color,
                             Qt::Alignment alignment) const {
    QRect area = rect().marginsRemoved(m_insets);
    area.adjust(0, (area.height() - m_title.heightForWidth(area.width())) / 2, 0, 0);
    m_title.draw(painter, QStyle::visualRect(layoutDirection(), rect(), area), color,
                 QStyle::visualAlignment(layoutDirection(), alignment));
}

} // namespace KestrioKit
