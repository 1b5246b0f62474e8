#include "KestrioKit/Widgets/Controls/Label.h"

#include "KestrioKit/Widgets/Drawing/FollowFont.h"

#include <QPainter>
#include <QStyle>

namespace KestrioKit {

Label::Label(const QString &text, TextStyle style, const SurveyColors &colors,
             QColor SurveyPalette::*role, Qt::Alignment alignment)
    : m_text(text, preferredFont(style)),
      m_overhang(m_text.overhang()),
      m_colors(colors),
      m_role(role),
      m_alignment(alignment) {
    followFont(this, colors, m_text, style);
    connect(&colors, &SurveyColors::changed, this, [this] { m_overhang = m_text.overhang(); });
    // The base class reports the text to assistive technology.
    setTextFormat(Qt::PlainText);
    setText(text);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

int Label::heightForWidth(int width) const {
    return m_text.text().isEmpty()
               ? 0
               : m_overhang.top() + m_text.heightForWidth(width) + m_overhang.bottom();
}

QSize Label::sizeHint() const {
    const int width = naturalWidth();
    return {width, heightForWidth(width)};
}

QSize Label::minimumSizeHint() const {
    return {0, heightForWidth(naturalWidth())};
}

void Label::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    m_text.draw(painter, rect().marginsRemoved(m_overhang), m_colors.palette().*m_role,
                QStyle::visualAlignment(layoutDirection(), m_alignment));
}

} // namespace KestrioKit
