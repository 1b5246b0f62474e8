#pragma once

#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Drawing/DrawnImage.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

namespace KestrioKit {

/// The round button that puts a survey away.
class CloseButton final : public Button {
    Q_OBJECT

public:
    /// `colors` outlives the button.
    CloseButton(const QString &title, const SurveyColors &colors);

    qreal alpha() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const SurveyColors &m_colors;
    DrawnImage m_image;
};

} // namespace KestrioKit
