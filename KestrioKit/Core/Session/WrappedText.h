#pragma once

#include "KestrioKit/KestrioKitExport.h"

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

/// A plain text that wraps into as many lines as it needs. Lines break between words, or within a
/// word that is too long for a line. Sizes are in device-independent pixels. Use it on the main
/// thread only.
class KESTRIOKIT_EXPORT WrappedText {
public:
    /// `font` must have its size in pixels.
    WrappedText(QString text, const QFont &font);

    /// Returns the text, with line feeds replaced by line separators.
    const QString &text() const { return m_text; }

    /// Replaces the font and its full size.
    void setFont(const QFont &font);

    /// Returns the smallest width at which only the text's own line feeds break lines.
    int naturalWidth() const;
    /// Returns the height of all lines when the text wraps at `width`.
    int heightForWidth(int width) const;

    /// Returns how far glyphs, such as diacritical marks, extend above and below the line height.
    QMargins overhang() const;

    /// Returns the font's full size in pixels. If the text does not fit into `room` without
    /// wrapping, returns the largest smaller size at which it does, at least 1.
    int fontSizeWithin(const QSize &room) const;
    /// Sets the size to draw with. The full size does not change.
    void setFontSize(int pixels);

    /// Draws the text from the top of `rect`. `alignment` is left, right or horizontally centred.
    void draw(QPainter &painter, const QRect &rect, const QColor &color,
              Qt::Alignment alignment) const;

private:
    const QTextLayout &layOut(int width) const;

    QString m_text;
    QFont m_font;
    /// Pixel size of the font before `setFontSize()`.
    int m_fullSize;
    /// The last layout, kept because laying out a long text is slow.
    mutable std::shared_ptr<QTextLayout> m_layout;
    mutable int m_width = -1;
    mutable std::optional<int> m_naturalWidth;
};

} // namespace KestrioKit
