#include "KestrioKit/Widgets/Controls/Label.h"

#include <QPainter>
#include <QStyle>

namespace KestrioKit {

Label::Label(const QString &text, const QFont &font, const QColor &color, Qt::Alignment alignment)
    : m_text(text, font), m_overhang(m_text.overhang()), m_color(color), m_alignment(alignment) {
    // The base is what tells assistive technology of the text.
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
    m_text.draw(painter, rect().marginsRemoved(m_overhang), m_color,
                QStyle::visualAlignment(layoutDirection(), m_alignment));
}

} // namespace KestrioKit
