#pragma once

#include <QColor>
#include <QFont>
#include <QMargins>
#include <QSize>
#include <QString>
#include <QTextLayout>

#include <memory>
#include <optional>

class QPainter;

namespace KestrioKit {

/// A plain text that is broken into as many lines as it takes: between words, or within one that is
/// too long for a line.
class WrappedText {
public:
    WrappedText(QString text, const QFont &font);

    const QString &text() const { return m_text; }

    void setFont(const QFont &font);

    /// The width at which only its own line feeds break it.
    int naturalWidth() const;
    int heightForWidth(int width) const;

    /// How far marks reach beyond the first line and the last.
    QMargins overhang() const;

    /// The font's own size in pixels, or the largest below it at which the text fits into `room`
    /// without being broken.
    int fontSizeWithin(const QSize &room) const;
    void setFontSize(int pixels);

    /// Draws it at the top of `rect`, aligned left, right or in the middle.
    void draw(QPainter &painter, const QRect &rect, const QColor &color,
              Qt::Alignment alignment) const;

private:
    const QTextLayout &layOut(int width) const;

    QString m_text;
    QFont m_font;
    int m_fullSize;
    /// As it was laid out last; making it takes long for long texts.
    mutable std::shared_ptr<QTextLayout> m_layout;
    mutable int m_width = -1;
    mutable std::optional<int> m_naturalWidth;
};

} // namespace KestrioKit
