#include "KestrioKit/UI/BackgroundView.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace KestrioKit {

void BackgroundView::setAlpha(qreal alpha) {
    m_alpha = std::clamp<qreal>(alpha, 0, 1);
    update();
}

// The first click may have been what brought the survey.
void BackgroundView::mouseDoubleClickEvent(QMouseEvent *) {}

void BackgroundView::mousePressEvent(QMouseEvent *event) {
    m_isPressed = event->button() == Qt::LeftButton;
}

void BackgroundView::mouseReleaseEvent(QMouseEvent *event) {
    const bool isTap = m_isPressed && event->button() == Qt::LeftButton &&
                       rect().contains(event->position().toPoint());
    m_isPressed = false;
    if (isTap)
        Q_EMIT tapped();
}

void BackgroundView::paintEvent(QPaintEvent *event) {
    QColor color = m_color;
    color.setAlphaF(float(m_color.alphaF() * m_alpha));
    QPainter(this).fillRect(event->rect(), color);
}

} // namespace KestrioKit
