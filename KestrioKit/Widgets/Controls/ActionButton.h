#pragma once

#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"
#include "KestrioKit/Widgets/Drawing/WrappedText.h"

namespace KestrioKit {

/// The button that sends an answer. It is filled with the accent colour, and its title wraps. Use
/// it on the main thread only.
class ActionButton final : public Button {
    Q_OBJECT

public:
    /// `title` is plain text. `colors` must outlive the button.
    ActionButton(const QString &title, const SurveyColors &colors);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    WrappedText m_title;
    const SurveyColors &m_colors;
};

} // namespace KestrioKit
