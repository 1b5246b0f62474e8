#include "KestrioKit/Widgets/Overlay/WindowMetrics.h"

#include <QWidget>

namespace KestrioKit {

// Qt includes the safe area in the margins of each widget, unless a layout has already placed the
// widget inside it. No layout places the overlay. The window's own margins may come from the host.
QMargins safeAreaInsets(const QWidget &view) {
    const QWidget *overlay = &view;
    while (overlay->parentWidget() && !overlay->parentWidget()->isWindow())
        overlay = overlay->parentWidget();
    return overlay->contentsMargins();
}

} // namespace KestrioKit
