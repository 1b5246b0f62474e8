#pragma once

#include <QPixmap>

#include <functional>

class QPainter;

namespace KestrioKit {

/// An image that is drawn rather than loaded: once for each kind of screen that it is shown on.
class DrawnImage {
public:
    using Draw = std::function<void(QPainter &painter)>;

    /// `size` in device-independent pixels, which `draw` draws in too.
    DrawnImage(const QSize &size, Draw draw) : m_size(size), m_draw(std::move(draw)) {}

    QSize size() const { return m_size; }

    const QPixmap &at(qreal devicePixelRatio) const;

    /// Has it drawn again when it is next needed.
    void redraw() { m_pixmap = {}; }

private:
    QSize m_size;
    Draw m_draw;
    mutable QPixmap m_pixmap;
};

} // namespace KestrioKit
