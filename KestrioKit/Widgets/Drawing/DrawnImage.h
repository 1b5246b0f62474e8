#pragma once

#include <QPixmap>

#include <functional>

class QPainter;

namespace KestrioKit {

/// An image that is drawn by code instead of loaded from a file. It caches the picture and draws it
/// again when the device pixel ratio changes. Use it on the main thread only.
class DrawnImage {
public:
    /// Draws the image in device-independent pixels.
    using Draw = std::function<void(QPainter &painter)>;

    /// `size` is in device-independent pixels. `draw` is kept and may be called several times.
    DrawnImage(const QSize &size, Draw draw) : m_size(size), m_draw(std::move(draw)) {}

    /// Returns the size in device-independent pixels.
    QSize size() const { return m_size; }

    /// Returns the picture for a screen of that ratio. The reference is valid until the next call.
    const QPixmap &at(qreal devicePixelRatio) const;

    /// Discards the cached picture, so that the image is drawn again when it is next needed.
    void redraw() { m_pixmap = {}; }

private:
    QSize m_size;
    Draw m_draw;
    mutable QPixmap m_pixmap;
};

} // namespace KestrioKit
