#include "KestrioKit/Widgets/Controls/ImageView.h"

#include <QPainter>

namespace KestrioKit {

ImageView::ImageView(DrawnImage image) : m_image(std::move(image)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ImageView::paintEvent(QPaintEvent *) {
    QPainter(this).drawPixmap(QPoint(), m_image.at(devicePixelRatio()));
}

} // namespace KestrioKit
