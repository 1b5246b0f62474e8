#include "KestrioKit/Core/Session/WrappedText.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// A width that is sufficient for any line.
constexpr int unlimitedWidth = 1 << 20;

qreal lineOffset(const QTextLine &line, int width, Qt::Alignment alignment) {
    const qreal rest = width - line.naturalTextWidth();
    if (alignment & Qt::AlignRight)
        return rest;
    return alignment & Qt::AlignHCenter ? rest / 2 : 0;
}

} // namespace

WrappedText::WrappedText(QString text, const QFont &font)
    : m_text(std::move(text)), m_font(font), m_fullSize(font.pixelSize()) {
    m_text.replace("\r\n"_L1, "\n"_L1);
    m_text.replace(u'\n', QChar::LineSeparator);
}

const QTextLayout &WrappedText::layOut(int width) const {
    if (m_layout && width == m_width)
        return *m_layout;
    m_layout = std::make_shared<QTextLayout>(m_text, m_font);
    m_width = width;
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // The text decides its direction, because the host's language may have the opposite one.
    option.setTextDirection(Qt::LayoutDirectionAuto);
    m_layout->setTextOption(option);
    m_layout->beginLayout();
    qreal top = 0;
    for (QTextLine line = m_layout->createLine(); line.isValid(); line = m_layout->createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, top});
        top += std::ceil(line.height());
    }
    m_layout->endLayout();
    return *m_layout;
}

int WrappedText::naturalWidth() const {
    if (!m_naturalWidth)
        m_naturalWidth = int(std::ceil(layOut(unlimitedWidth).maximumWidth()));
    return *m_naturalWidth;
}

int WrappedText::heightForWidth(int width) const {
    const QTextLayout &layout = layOut(std::max(width, 1));
    const QTextLine last = layout.lineAt(layout.lineCount() - 1);
    return int(std::ceil(last.y() + last.height()));
}

QMargins WrappedText::overhang() const {
    const QTextLine line = layOut(unlimitedWidth).lineAt(0);
    const QRectF ink = QFontMetricsF(m_font).tightBoundingRect(m_text);
    const qreal above = std::max<qreal>(-ink.top() - line.ascent(), 0);
    const qreal below = std::max<qreal>(ink.bottom() - line.descent(), 0);
    return {0, int(std::ceil(above)), 0, int(std::ceil(below))};
}

int WrappedText::fontSizeWithin(const QSize &room) const {
    WrappedText smaller = *this;
    int pixels = m_fullSize;
    smaller.setFontSize(pixels);
    while (pixels > 1 && (smaller.naturalWidth() > room.width() ||
                          smaller.heightForWidth(smaller.naturalWidth()) > room.height()))
        smaller.setFontSize(--pixels);
    return pixels;
}

void WrappedText::setFont(const QFont &font) {
    m_font = font;
    m_fullSize = font.pixelSize();
    m_layout.reset();
    m_naturalWidth.reset();
}

void WrappedText::setFontSize(int pixels) {
    if (pixels == m_font.pixelSize())
        return;
    m_font.setPixelSize(pixels);
    m_layout.reset();
    m_naturalWidth.reset();
}

void WrappedText::draw(QPainter &painter, const QRect &rect, const QColor &color,
                       Qt::Alignment alignment) const {
    const QTextLayout &layout = layOut(std::max(rect.width(), 1));
    painter.setPen(color);
    for (int index = 0; index < layout.lineCount(); ++index) {
        const QTextLine line = layout.lineAt(index);
        line.draw(&painter, rect.topLeft() + QPointF(lineOffset(line, rect.width(), alignment), 0));
    }
}

} // namespace KestrioKit
