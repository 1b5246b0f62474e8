#pragma once

#include "KestrioKit/Core/Session/Animation.h"
#include "KestrioKit/Widgets/Controls/TitledButton.h"
#include "KestrioKit/Widgets/Drawing/DrawnImage.h"

namespace KestrioKit {

/// A selectable row with a check box and a title that wraps. A click alone does not select it: its
/// owner calls `setChecked()` or `toggleAnimated()`. Use it on the main thread only.
class CheckboxButton final : public TitledButton {
    Q_OBJECT

public:
    /// `title` is plain text. `colors` must outlive the button.
    CheckboxButton(const QString &title, const SurveyColors &colors);

    /// Toggles the selection immediately and cross-fades between the two images.
    void toggleAnimated();

    /// Returns the opacity: reduced while the button is pressed, otherwise 1.
    qreal alpha() const override;

protected:
    void checkStateSet() override;
    void nextCheckState() override {}
    void paintEvent(QPaintEvent *event) override;

private:
    /// Returns the opacity to paint with. It is always 1 for a palette that keeps contrast. Such a
    /// palette shows a press by a background instead.
    qreal opacity() const;
    void drawPressed(QPainter &painter) const;
    void drawCheckbox(QPainter &painter) const;

    DrawnImage m_uncheckedImage;
    DrawnImage m_checkedImage;
    /// Opacity of the checked image, from 0 (invisible) to 1 (opaque).
    qreal m_checkedAlpha = 0;
    /// The running cross-fade. Null if there is none.
    QPointer<Animation> m_dissolve;
};

} // namespace KestrioKit
