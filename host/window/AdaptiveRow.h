#pragma once

#include <QWidget>

class QBoxLayout;

/// Shows widgets side by side where it is wide, and one under the other where it is not.
class AdaptiveRow final : public QWidget {
    Q_OBJECT

public:
    /// They stand side by side from `wideWidth` on, in pixels.
    AdaptiveRow(int wideWidth, int spacing);

    void addWidget(QWidget *view, int stretch);

    /// As narrow as they are one under the other.
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    int m_wideWidth;
    QBoxLayout *m_layout;
};
