#pragma once

#include <QWidget>

namespace KestrioKit {

class Label;
class SurveyColors;

/// Shows two texts at the two ends of a row. Each text takes one line if both fit, and otherwise
/// wraps in its own column. Use it on the main thread only.
class LabelRow final : public QWidget {
    Q_OBJECT

public:
    /// `left` is at the leading end and `right` at the trailing end. `colors` must outlive the row.
    LabelRow(const QString &left, const QString &right, const SurveyColors &colors);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Widths of the two labels, in device-independent pixels.
    struct Widths {
        int left;
        int right;
    };

    Widths widthsWithin(int width) const;
    void layOut();

    Label *m_left;
    Label *m_right;
};

} // namespace KestrioKit
