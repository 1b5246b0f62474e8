#include "KestrioKit/Widgets/Overlay/WindowMetrics.h"

#include <QWidget>

namespace KestrioKit {

namespace {

constexpr int leastRegularLength = 600;

SizeClass sizeClass(int length) {
    return length >= leastRegularLength ? SizeClass::regular : SizeClass::compact;
}

} // namespace

SizeClasses sizeClasses(const QSize &window) {
    return {sizeClass(window.width()), sizeClass(window.height())};
}

// Qt counts the safe area among the margins of each widget, unless a layout has placed the widget
// inside of it, which none does here. Those of the window itself may be the host's own.
QMargins safeAreaInsets(const QWidget &view) {
    const QWidget *overlay = &view;
    while (overlay->parentWidget() && !overlay->parentWidget()->isWindow())
        overlay = overlay->parentWidget();
    return overlay->contentsMargins();
}

} // namespace KestrioKit
