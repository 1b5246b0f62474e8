#pragma once

#include "KestrioKit/Widgets/Controls/Caret.h"

#include <QTextEdit>

namespace KestrioKit {

/// A bordered field for several lines of plain text. Tab moves the focus out of it. Use it on the
/// main thread only.
class TextView final : public QTextEdit {
    Q_OBJECT

public:
    /// `inset` is the distance from the edge to the text. `inset` and `height` are in
    /// device-independent pixels. `colors` must outlive the field.
    TextView(const SurveyColors &colors, int inset, int height);

    /// Returns the text exactly as it was typed, with a line feed between paragraphs.
    QString typedText() const;

    /// Returns whether the field shows any text, including text that is still being composed.
    bool isShowingText() const;

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void adoptColors();
    void drawFrame();

    const SurveyColors &m_colors;
    int m_height;
    QFont m_font;
    Caret m_caret;
};

} // namespace KestrioKit
