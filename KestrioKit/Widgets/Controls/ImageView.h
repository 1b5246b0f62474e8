#pragma once

#include "KestrioKit/Widgets/Drawing/DrawnImage.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

/// Shows an image in its own size.
class ImageView final : public QWidget {
    Q_OBJECT

public:
    /// The image is drawn again when `colors` change; they outlive it.
    ImageView(DrawnImage image, const SurveyColors &colors);

    QSize sizeHint() const override { return m_image.size(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    DrawnImage m_image;
};

} // namespace KestrioKit
