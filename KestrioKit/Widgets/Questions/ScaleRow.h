#pragma once

#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

class ThemedButton;

/// Shows buttons of equal width side by side in one frame, with a line between neighbours. Use it
/// on the main thread only.
class ScaleRow final : public QWidget {
    Q_OBJECT

public:
    /// `height` is the fixed height in device-independent pixels. `colors` must outlive the row.
    ScaleRow(const SurveyColors &colors, int height);

    /// Adds `button` at the trailing end. The row then owns it.
    void addButton(ThemedButton *button);

    /// Places the buttons and gives all titles the largest common size that fits.
    void layOut();

    QSize sizeHint() const override { return {0, m_height}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;

private:
    void sizeTitles();

    const SurveyColors &m_colors;
    int m_height;
    QList<ThemedButton *> m_buttons;
};

} // namespace KestrioKit
