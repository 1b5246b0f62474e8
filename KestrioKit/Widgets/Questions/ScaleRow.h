#pragma once

#include <QColor>
#include <QWidget>

namespace KestrioKit {

class ThemedButton;

/// Buttons side by side in one frame, equally wide, with a line between each two.
class ScaleRow final : public QWidget {
    Q_OBJECT

public:
    ScaleRow(const QColor &themeColor, int height);

    /// Owns the button from now on.
    void addButton(ThemedButton *button);

    QSize sizeHint() const override { return {0, m_height}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;

private:
    void layOut();
    void sizeTitles();

    QColor m_themeColor;
    int m_height;
    QList<ThemedButton *> m_buttons;
};

} // namespace KestrioKit
