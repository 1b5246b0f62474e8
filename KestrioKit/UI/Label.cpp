#include "KestrioKit/UI/Label.h"

#include <QPainter>
#include <QStyle>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// Only a style sheet of its own keeps those of the host away.
constexpr auto ownStyleSheet =
    "background: none; border: none; margin: 0; padding: 0; min-width: 0; min-height: 0"_L1;

} // namespace

Label::Label(const QString &text, const QFont &font, const QColor &color, Qt::Alignment alignment)
    : m_text(text, font), m_overhang(m_text.overhang()), m_color(color), m_alignment(alignment) {
    // The base is what tells assistive technology of the text.
    setTextFormat(Qt::PlainText);
    setText(text);
    setStyleSheet(ownStyleSheet);
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
