#pragma once

#include "KestrioKit/Widgets/Controls/TitledButton.h"

#include <QPainterPath>

#include <optional>

namespace KestrioKit {

/// A button for one answer, with a title that wraps. Use it on the main thread only.
class ThemedButton final : public TitledButton {
    Q_OBJECT

public:
    /// Appearance of the button apart from its title, in device-independent pixels.
    struct Look {
        /// Space around the title.
        QMargins insets = {};
        Qt::Alignment alignment = Qt::AlignHCenter;
        qreal cornerRadius = 0;
        /// 0 means no border.
        qreal borderWidth = 0;
    };

    /// `title` is plain text. `colors` must outlive the button.
    ThemedButton(const QString &title, const SurveyColors &colors, const Look &look);

    /// Fills the background if `isSelected`, until the button is next pressed or released.
    void setSelected(bool isSelected);

    /// Clips the background to `shape`, in the parent's coordinates. The default is no clipping.
    void setBackgroundShape(const QPainterPath &shape);

    /// Returns the font size in pixels at which the title fits into `room` without wrapping, at
    /// most the usual size.
    int titleSizeWithin(const QSize &room) const { return title().fontSizeWithin(room); }
    /// Sets the font size of the title, in pixels.
    void setTitleSize(int pixels);

protected:
    void highlightedChanged() override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setTinted(bool isTinted);
    void drawBackground(QPainter &painter) const;

    Look m_look;
    std::optional<QPainterPath> m_backgroundShape;
    /// Whether the background is filled. Holds whichever changed last, selection or highlight.
    bool m_isTinted = false;
};

} // namespace KestrioKit
