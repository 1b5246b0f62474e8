#pragma once

#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Drawing/DrawnImage.h"

namespace KestrioKit {

/// The round button that puts a survey away.
class CloseButton final : public Button {
    Q_OBJECT

public:
    explicit CloseButton(const QString &title);

    qreal alpha() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    DrawnImage m_image;
};

} // namespace KestrioKit
