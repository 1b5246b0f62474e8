#pragma once

#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"
#include "KestrioKit/Widgets/Drawing/WrappedText.h"

#include <QPainterPath>

#include <optional>

namespace KestrioKit {

/// A button for one answer. Its title wraps.
class ThemedButton final : public Button {
    Q_OBJECT

public:
    /// How it looks but for its title.
    struct Look {
        QMargins insets = {};
        Qt::Alignment alignment = Qt::AlignHCenter;
        qreal cornerRadius = 0;
        qreal borderWidth = 0;
    };

    /// `colors` outlives the button.
    ThemedButton(const QString &title, const SurveyColors &colors, const Look &look);

    void setSelected(bool isSelected);

    /// Keeps the background within `shape`, in the parent's coordinates.
    void setBackgroundShape(const QPainterPath &shape);

    /// The size of type in pixels: the usual one, or what lets the title fit into `room` on one
    /// line.
    int titleSizeWithin(const QSize &room) const { return m_title.fontSizeWithin(room); }
    void setTitleSize(int pixels);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void highlightedChanged() override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setTinted(bool isTinted);
    void drawBackground(QPainter &painter) const;
    void drawTitle(QPainter &painter) const;

    WrappedText m_title;
    const SurveyColors &m_colors;
    Look m_look;
    std::optional<QPainterPath> m_backgroundShape;
    /// Of being selected and being highlighted, what was set last.
    bool m_isTinted = false;
};

} // namespace KestrioKit
