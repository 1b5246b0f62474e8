#pragma once

#include <QWidget>

namespace KestrioKit {

class SurveyColors;

/// Shows a content of its own width, and scrolls it where it is higher: with a finger, the wheel,
/// or by moving the focus. Filled, so that what is under it need not be painted.
class ScrollView final : public QWidget {
    Q_OBJECT

public:
    /// `colors` outlives it.
    explicit ScrollView(const SurveyColors &colors);

    /// Owns `content` from now on. The content before, if any, is no longer shown here.
    void setContent(QWidget *content);

    /// The height at which the content need not scroll, for that width.
    int contentHeight(int width) const;

    /// Takes the content's height over when it has changed.
    void layOut();

    /// How far the content can be scrolled, and is, in pixels.
    int maximumOffset() const;
    int offset() const { return m_offset; }
    void setOffset(int offset);

    /// By a page, a line, or to an end, as that key says; nothing for any other.
    void scroll(int key);

    /// Scrolls as little as is needed to show `view`, which lies on the content.
    void reveal(const QWidget *view);

Q_SIGNALS:
    /// The offset, or how far it may go, is another.
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
    /// What a fine wheel has turned that does not make a pixel yet.
    qreal m_wheelRemainder = 0;
};

} // namespace KestrioKit
