#pragma once

#include "KestrioKit/Core/Session/WrappedText.h"
#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QColor>
#include <QMargins>

namespace KestrioKit {

/// Base class of the buttons with a title that wraps. The title is in the body style, and its size
/// decides the size of the button. Use it on the main thread only.
class TitledButton : public Button {
    Q_OBJECT

public:
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    /// `text` is plain text. `insets` is the space around the title. A title that is lower than
    /// `leastTitleHeight` gets that height. Both are in device-independent pixels. `colors` must
    /// outlive the button.
    TitledButton(const QString &text, const SurveyColors &colors, const QMargins &insets,
                 int leastTitleHeight = 0);

    /// Draws the title, vertically centred between the insets. `alignment` is leading, trailing or
    /// centred. It is mirrored in right-to-left layouts.
    void drawTitle(QPainter &painter, const QColor &color, Qt::Alignment alignment) const;

    const WrappedText &title() const { return m_title; }
    WrappedText &title() { return m_title; }
    const SurveyColors &colors() const { return m_colors; }

private:
    WrappedText m_title;
    const SurveyColors &m_colors;
    QMargins m_insets;
    int m_leastTitleHeight;
};

} // namespace KestrioKit
