#pragma once

#include "KestrioKit/SurveyPalette.h"

#include <QQuickPaintedItem>

namespace KestrioKit::Quick {

/// One of the small drawings on the card, scaled to the item's size. Use it on the main thread
/// only.
class PictogramItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(KestrioPictogram)
    Q_PROPERTY(SurveyPalette palette READ palette WRITE setPalette NOTIFY changed REQUIRED)
    Q_PROPERTY(Shape shape MEMBER m_shape REQUIRED)

public:
    /// The drawings.
    enum Shape : int { Cross, UncheckedBox, CheckedBox, Thanks };
    Q_ENUM(Shape)

    PictogramItem() { setAntialiasing(true); }

    const SurveyPalette &palette() const { return m_palette; }
    void setPalette(const SurveyPalette &palette);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    /// Emitted when the palette has changed.
    void changed();

private:
    SurveyPalette m_palette;
    Shape m_shape = Cross;
};

} // namespace KestrioKit::Quick
