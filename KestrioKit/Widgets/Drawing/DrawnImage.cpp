#include "KestrioKit/Widgets/Drawing/DrawnImage.h"

#include <QPainter>

namespace KestrioKit {

const QPixmap &DrawnImage::at(qreal devicePixelRatio) const {
    if (m_pixmap.isNull() || m_pixmap.devicePixelRatio() != devicePixelRatio) {
        m_pixmap = QPixmap(m_size * devicePixelRatio);
        m_pixmap.setDevicePixelRatio(devicePixelRatio);
        m_pixmap.fill(Qt::transparent);
        QPainter painter(&m_pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        m_draw(painter);
    }
    return m_pixmap;
}

} // namespace KestrioKit
