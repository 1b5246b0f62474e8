#pragma once

#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Drawing/DrawnImage.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

namespace KestrioKit {

/// The round button that closes a survey. Use it on the main thread only.
class CloseButton final : public Button {
    Q_OBJECT

public:
    /// `title` is the accessible name. `colors` must outlive the button.
    CloseButton(const QString &title, const SurveyColors &colors);

    /// Returns the opacity: reduced while the button is pressed, otherwise 1.
    qreal alpha() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const SurveyColors &m_colors;
    DrawnImage m_image;
};

} // namespace KestrioKit
