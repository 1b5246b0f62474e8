#pragma once

#include <QGraphicsEffect>

namespace KestrioKit {

/// Shows a widget and its descendants with another opacity or size. Both factors are 1 by default.
/// The effect is disabled then and costs nothing. Use it on the main thread only.
class ViewEffect final : public QGraphicsEffect {
    Q_OBJECT

public:
    /// Sets the opacity of `view`, from 0 (invisible) to 1 (opaque).
    static void setAlpha(QWidget *view, qreal alpha);
    /// Returns the opacity of `view`. It is 1 if none was set.
    static qreal alpha(const QWidget *view);

    /// Scales `view` around its centre. 1 is the normal size. Values above 1 are meant only for the
    /// overshoot of an animation.
    static void setScale(QWidget *view, qreal scale);

protected:
    void draw(QPainter *painter) override;

private:
    static ViewEffect &of(QWidget *view);
    void refresh();

    qreal m_alpha = 1;
    qreal m_scale = 1;
};

} // namespace KestrioKit
