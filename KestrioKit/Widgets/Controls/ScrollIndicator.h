#pragma once

#include <QWidget>

namespace KestrioKit {

class ScrollView;
class SurveyColors;

/// Shows, beside a scroll view, which part of its content is in sight, and can be dragged. Hidden
/// while all of it is.
class ScrollIndicator final : public QWidget {
    Q_OBJECT

public:
    static constexpr int breadth = 12;

    /// `view` and `colors` must outlive it.
    ScrollIndicator(ScrollView &view, const SurveyColors &colors);

protected:
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void follow();
    QRectF thumb() const;

    ScrollView &m_view;
    const SurveyColors &m_colors;
    /// Where on the thumb it is held.
    qreal m_grip = 0;
};

} // namespace KestrioKit
