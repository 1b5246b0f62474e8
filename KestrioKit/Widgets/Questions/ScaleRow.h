#pragma once

#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

#include <functional>

namespace KestrioKit {

class ThemedButton;

/// Shows buttons of equal width side by side in one frame, with a line between neighbours. Use it
/// on the main thread only.
class ScaleRow final : public QWidget {
    Q_OBJECT

public:
    /// Creates the button for a number on the scale.
    using ButtonFactory = std::function<ThemedButton *(int value)>;

    /// Calls `makeButton` for each number from `firstValue` to `lastValue` and owns the buttons
    /// that it returns. `height` is the fixed height in device-independent pixels. `colors` must
    /// outlive the row.
    ScaleRow(int firstValue, int lastValue, const ButtonFactory &makeButton,
             const SurveyColors &colors, int height);

    /// Returns the buttons, from the leading to the trailing end.
    const QList<ThemedButton *> &buttons() const { return m_buttons; }

    QSize sizeHint() const override { return {0, m_height}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;

private:
    void layOut();
    void sizeTitles();

    const SurveyColors &m_colors;
    int m_height;
    QList<ThemedButton *> m_buttons;
};

} // namespace KestrioKit
