#include "KestrioKit/Widgets/Controls/ImageView.h"

#include <QPainter>

namespace KestrioKit {

ImageView::ImageView(DrawnImage image, const SurveyColors &colors) : m_image(std::move(image)) {
    connect(&colors, &SurveyColors::changed, this, [this] { m_image.redraw(); });
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ImageView::paintEvent(QPaintEvent *) {
    QPainter(this).drawPixmap(QPoint(), m_image.at(devicePixelRatio()));
}

} // namespace KestrioKit
