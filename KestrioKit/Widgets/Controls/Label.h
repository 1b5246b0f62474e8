#pragma once

#include "KestrioKit/Core/Session/Fonts.h"
#include "KestrioKit/Core/Session/WrappedText.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QLabel>

namespace KestrioKit {

/// Shows a whole plain text, wrapped into as many lines as the width requires. Use it on the main
/// thread only.
class Label final : public QLabel {
    Q_OBJECT

public:
    /// `role` is the colour of the text. `alignment` is leading (`AlignLeft`), trailing
    /// (`AlignRight`) or centred. It is mirrored in right-to-left layouts. `colors` must outlive
    /// the label.
    Label(const QString &text, TextStyle style, const SurveyColors &colors,
          QColor SurveyPalette::*role = &SurveyPalette::text,
          Qt::Alignment alignment = Qt::AlignLeft);

    /// Returns the smallest width at which only the text's own line feeds break lines.
    int naturalWidth() const { return m_text.naturalWidth(); }

    bool hasHeightForWidth() const override { return true; }
    /// Returns 0 for an empty text.
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    WrappedText m_text;
    /// How far glyphs extend above and below the lines.
    QMargins m_overhang;
    const SurveyColors &m_colors;
    QColor SurveyPalette::*m_role;
    Qt::Alignment m_alignment;
};

} // namespace KestrioKit
