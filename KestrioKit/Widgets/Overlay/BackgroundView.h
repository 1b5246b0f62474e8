#pragma once

#include <QColor>
#include <QPoint>
#include <QWidget>

namespace KestrioKit {

/// The layer that dims the host window. Use it on the main thread only.
class BackgroundView final : public QWidget {
    Q_OBJECT
    Q_PROPERTY(qreal alpha READ alpha WRITE setAlpha)

public:
    /// `color` is the dimming at full opacity.
    explicit BackgroundView(const QColor &color) : m_color(color) {}

    /// The strength of the dimming, from 0 (invisible) to 1 (the full colour). The default is 0.
    qreal alpha() const { return m_alpha; }
    void setAlpha(qreal alpha);

Q_SIGNALS:
    /// Emitted when the left button is pressed and released on the layer without a drag.
    void tapped();

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
    qreal m_alpha = 0;
    /// Where the mouse was last pressed, in the layer's coordinates.
    QPoint m_pressedAt;
    /// Whether a release would still count as a tap.
    bool m_isPressed = false;
};

} // namespace KestrioKit
