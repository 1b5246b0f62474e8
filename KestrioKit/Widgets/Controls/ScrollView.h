#pragma once

#include <QWidget>

namespace KestrioKit {

class SurveyColors;

/// Shows content that is as wide as the view and scrolls it vertically if it is higher. The visitor
/// scrolls with a finger, the wheel or the keyboard. The view is opaque, so that widgets behind it
/// are not painted. `QScrollArea` is not used because it ignores the pixel distances of touchpads
/// and adds its viewport to what assistive technology sees. Use it on the main thread only.
class ScrollView final : public QWidget {
    Q_OBJECT

public:
    /// `colors` must outlive the view.
    explicit ScrollView(const SurveyColors &colors);

    /// Shows `content` from its top and takes ownership of it. The previous content is no longer
    /// laid out or scrolled. The caller must hide and delete it.
    void setContent(QWidget *content);

    /// Returns the height of the content at `width`, or 0 without content.
    int contentHeight(int width) const;

    /// Adapts to the content's height. Call it when that height has changed.
    void layOut();

    /// Returns the largest possible offset, in device-independent pixels. It is 0 if all content
    /// fits.
    int maximumOffset() const;
    /// Returns how far the content is scrolled, in device-independent pixels.
    int offset() const { return m_offset; }
    /// Scrolls to `offset`, limited to the valid range.
    void setOffset(int offset);

    /// Scrolls by a page (Page Up, Page Down), by a line (Up, Down) or to an end (Home, End). Other
    /// keys do nothing.
    void scroll(int key);

    /// Scrolls as little as necessary to show `view`, a descendant of the content.
    void reveal(const QWidget *view);

Q_SIGNALS:
    /// Emitted when the offset or its maximum may have changed.
    void scrolled();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    bool scrollWithFinger(QEvent *event);

    const SurveyColors &m_colors;
    QWidget *m_content = nullptr;
    int m_offset = 0;
    /// Fraction of a pixel that a high-resolution wheel has turned but that is not scrolled yet.
    qreal m_wheelRemainder = 0;
};

} // namespace KestrioKit
