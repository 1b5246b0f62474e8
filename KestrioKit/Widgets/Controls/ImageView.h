#pragma once

#include "KestrioKit/Widgets/Drawing/DrawnImage.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

/// Shows an image in its own size. Use it on the main thread only.
class ImageView final : public QWidget {
    Q_OBJECT

public:
    /// The image is drawn again whenever `colors` change. `colors` must outlive the view.
    ImageView(DrawnImage image, const SurveyColors &colors);

    QSize sizeHint() const override { return m_image.size(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    DrawnImage m_image;
};

} // namespace KestrioKit
