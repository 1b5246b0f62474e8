#pragma once

#include <QGraphicsEffect>

namespace KestrioKit {

/// Shows its widget, with all that is on it, paler or smaller. Both are 1 at first, and cost
/// nothing then.
class ViewEffect final : public QGraphicsEffect {
    Q_OBJECT

public:
    /// From 0, unseen, to 1.
    static void setAlpha(QWidget *view, qreal alpha);
    static qreal alpha(const QWidget *view);

    /// About the middle of the widget; 1 is its own size, and nothing grows beyond that by more
    /// than an overshooting animation does.
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
