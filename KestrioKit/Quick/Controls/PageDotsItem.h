#pragma once

#include "KestrioKit/SurveyPalette.h"

#include <QQuickPaintedItem>

namespace KestrioKit::Quick {

/// The dots that stand for the pages of a survey. Use it on the main thread only.
class PageDotsItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(KestrioPageDots)
    Q_PROPERTY(SurveyPalette palette READ palette WRITE setPalette NOTIFY changed REQUIRED)
    Q_PROPERTY(int count MEMBER m_count NOTIFY changed REQUIRED)
    Q_PROPERTY(int current MEMBER m_current NOTIFY changed REQUIRED)
    Q_PROPERTY(bool mirrored MEMBER m_isMirrored NOTIFY changed REQUIRED)

public:
    PageDotsItem();

    const SurveyPalette &palette() const { return m_palette; }
    void setPalette(const SurveyPalette &palette);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    /// Emitted when the dots look different.
    void changed();

private:
    SurveyPalette m_palette;
    int m_count = 0;
    int m_current = 0;
    bool m_isMirrored = false;
};

} // namespace KestrioKit::Quick
