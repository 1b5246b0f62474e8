#pragma once

#include <QWidget>

namespace KestrioKit {

class Label;
class SurveyColors;

/// Two texts at the ends of a row: on one line each where both fit, else side by side on several.
class LabelRow final : public QWidget {
    Q_OBJECT

public:
    /// `colors` outlives the row.
    LabelRow(const QString &left, const QString &right, const SurveyColors &colors);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
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
