#pragma once

#include <QColor>
#include <QPoint>
#include <QWidget>

namespace KestrioKit {

/// The layer that dims the host's window. For the main thread.
class BackgroundView final : public QWidget {
    Q_OBJECT
    Q_PROPERTY(qreal alpha READ alpha WRITE setAlpha)

public:
    explicit BackgroundView(const QColor &color) : m_color(color) {}

    /// From 0, unseen, to 1, as dim as its colour; 0 at first.
    qreal alpha() const { return m_alpha; }
    void setAlpha(qreal alpha);

Q_SIGNALS:
    /// Pressed and released here, without having been dragged in between.
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
    QPoint m_pressedAt;
    bool m_isPressed = false;
};

} // namespace KestrioKit
