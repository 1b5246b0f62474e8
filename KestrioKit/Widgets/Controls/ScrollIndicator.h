#pragma once

#include <QWidget>

namespace KestrioKit {

class ScrollView;
class SurveyColors;

/// A narrow scroll bar that shows which part of a scroll view's content is visible. The visitor can
/// drag it, and a press beside it moves it there. It is hidden while the whole content is visible.
/// `QScrollBar` is not used because its handle moves by whole pixels, and a press beside the handle
/// scrolls by a page. Use it on the main thread only.
class ScrollIndicator final : public QWidget {
    Q_OBJECT

public:
    /// `view` and `colors` must outlive the indicator.
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
    /// Distance of the pointer from the top of the dragged thumb.
    qreal m_grip = 0;
};

} // namespace KestrioKit
