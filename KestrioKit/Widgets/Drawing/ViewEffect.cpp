#include "KestrioKit/Widgets/Drawing/ViewEffect.h"

#include <QPainter>
#include <QWidget>

namespace KestrioKit {

ViewEffect &ViewEffect::of(QWidget *view) {
    auto *effect = qobject_cast<ViewEffect *>(view->graphicsEffect());
    if (!effect) {
        effect = new ViewEffect;
        view->setGraphicsEffect(effect);
    }
    return *effect;
}

void ViewEffect::setAlpha(QWidget *view, qreal alpha) {
    ViewEffect &effect = of(view);
    effect.m_alpha = alpha;
    effect.refresh();
}

qreal ViewEffect::alpha(const QWidget *view) {
    const auto *const effect = qobject_cast<const ViewEffect *>(view->graphicsEffect());
    return effect ? effect->m_alpha : 1;
}

void ViewEffect::setScale(QWidget *view, qreal scale) {
    ViewEffect &effect = of(view);
    effect.m_scale = scale;
    effect.refresh();
}

// A disabled effect lets its widget paint directly, without a pixmap in between.
void ViewEffect::refresh() {
    const bool changesAnything = m_alpha != 1 || m_scale != 1;
    if (changesAnything != isEnabled())
        setEnabled(changesAnything);
    update();
}

void ViewEffect::draw(QPainter *painter) {
    if (m_alpha <= 0)
        return;
    QPoint offset;
    const QPixmap picture = sourcePixmap(Qt::LogicalCoordinates, &offset, NoPad);
    const QPointF middle = sourceBoundingRect().center();
    painter->save();
    painter->setOpacity(painter->opacity() * m_alpha);
    painter->setRenderHint(QPainter::SmoothPixmapTransform, m_scale != 1);
    painter->translate(middle);
    painter->scale(m_scale, m_scale);
    painter->translate(-middle);
    painter->drawPixmap(offset, picture);
    painter->restore();
}

} // namespace KestrioKit
