#include "KestrioKit/UI/WindowMetrics.h"

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

QMargins safeAreaInsets(const QWidget &) {
    return {};
}

} // namespace KestrioKit
