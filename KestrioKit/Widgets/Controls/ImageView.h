#pragma once

#include "KestrioKit/Widgets/Drawing/DrawnImage.h"

#include <QWidget>

namespace KestrioKit {

/// Shows an image in its own size.
class ImageView final : public QWidget {
    Q_OBJECT

public:
    explicit ImageView(DrawnImage image);

    QSize sizeHint() const override { return m_image.size(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    DrawnImage m_image;
};

} // namespace KestrioKit
