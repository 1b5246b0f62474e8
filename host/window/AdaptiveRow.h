#pragma once

#include <QWidget>

class QBoxLayout;

/// Shows widgets side by side if there is enough width, otherwise one below another.
class AdaptiveRow final : public QWidget {
    Q_OBJECT

public:
    /// The widgets are side by side from a width of `wideWidth` pixels. `spacing` is in pixels.
    AdaptiveRow(int wideWidth, int spacing);

    /// Adds a widget, which the row owns from then on. `stretch` is its share of additional space.
    void addWidget(QWidget *view, int stretch);

    /// Returns the minimum size. Its width is that of the widgets one below another.
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    int m_wideWidth;
    QBoxLayout *m_layout;
};
