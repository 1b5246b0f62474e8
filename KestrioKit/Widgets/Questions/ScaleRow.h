#pragma once

#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

class ThemedButton;

/// Buttons side by side in one frame, equally wide, with a line between each two.
class ScaleRow final : public QWidget {
    Q_OBJECT

public:
    /// `colors` outlives the row.
    ScaleRow(const SurveyColors &colors, int height);

    /// Owns the button from now on.
    void addButton(ThemedButton *button);

    /// Places the buttons, with titles as large as all of them have room for.
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
