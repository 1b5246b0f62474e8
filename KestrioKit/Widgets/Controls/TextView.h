#pragma once

#include "KestrioKit/Widgets/Controls/Caret.h"

#include <QTextEdit>

namespace KestrioKit {

/// A field for several lines of plain text, with a border. Tab leaves it.
class TextView final : public QTextEdit {
    Q_OBJECT

public:
    /// `inset` lies between its edge and the text. `colors` outlives the field.
    TextView(const SurveyColors &colors, int inset, int height);

    /// Character for character, with a line feed between paragraphs.
    QString typedText() const;

    /// Whether there is anything to read in it, be it still being composed.
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
