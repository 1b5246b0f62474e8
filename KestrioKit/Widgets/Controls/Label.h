#pragma once

#include "KestrioKit/Widgets/Drawing/Fonts.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"
#include "KestrioKit/Widgets/Drawing/WrappedText.h"

#include <QLabel>

namespace KestrioKit {

/// Shows a plain text whole, on as many lines as its width asks for.
class Label final : public QLabel {
    Q_OBJECT

public:
    /// `alignment` is leading, trailing (`AlignRight`), or in the middle; mirrored for languages
    /// that are written from the right.
    /// `colors` outlives the label.
    Label(const QString &text, TextStyle style, const SurveyColors &colors,
          QColor SurveyPalette::*role = &SurveyPalette::text,
          Qt::Alignment alignment = Qt::AlignLeft);

    /// The width that it takes on one line.
    int naturalWidth() const { return m_text.naturalWidth(); }

    bool hasHeightForWidth() const override { return true; }
    /// Nothing for an empty text.
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    WrappedText m_text;
    QMargins m_overhang;
    const SurveyColors &m_colors;
    QColor SurveyPalette::*m_role;
    Qt::Alignment m_alignment;
};

} // namespace KestrioKit
