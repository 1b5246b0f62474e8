#pragma once

#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Drawing/WrappedText.h"

#include <QPixmap>

namespace KestrioKit {

/// The button that sends an answer: filled with the theme's colour.
class ActionButton final : public Button {
    Q_OBJECT

public:
    ActionButton(const QString &title, const QColor &themeColor);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    WrappedText m_title;
    QPixmap m_backgroundImage;
};

} // namespace KestrioKit
