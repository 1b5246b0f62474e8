#pragma once

#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Drawing/Animation.h"
#include "KestrioKit/Widgets/Drawing/DrawnImage.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"
#include "KestrioKit/Widgets/Drawing/WrappedText.h"

namespace KestrioKit {

/// A row that can be selected, with a check box and a title that wraps. Its owner selects it
/// (`setChecked`): a click alone does not.
class CheckboxButton final : public Button {
    Q_OBJECT

public:
    /// `colors` outlives the button.
    CheckboxButton(const QString &title, const SurveyColors &colors);

    /// `setChecked(!isChecked())`, dissolving from one look into the other.
    void toggleAnimated();

    qreal alpha() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void checkStateSet() override;
    void nextCheckState() override {}
    void paintEvent(QPaintEvent *event) override;

private:
    /// The opacity to paint it with, which not every palette expresses a press by.
    qreal opacity() const;
    void drawPressed(QPainter &painter) const;
    void drawCheckbox(QPainter &painter) const;
    void drawLabel(QPainter &painter) const;

    WrappedText m_label;
    const SurveyColors &m_colors;
    DrawnImage m_uncheckedImage;
    DrawnImage m_checkedImage;
    /// How much of the checked image shows, from 0 to 1.
    qreal m_checkedAlpha = 0;
    QPointer<Animation> m_dissolve;
};

} // namespace KestrioKit
