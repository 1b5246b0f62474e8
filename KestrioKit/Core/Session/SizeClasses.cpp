#include "KestrioKit/Core/Session/SizeClasses.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"

namespace KestrioKit {

namespace {

SizeClass sizeClass(int length) {
    return length >= screenMetrics.leastRegularLength ? SizeClass::regular : SizeClass::compact;
}

} // namespace

SizeClasses sizeClasses(const QSize &window) {
    return {sizeClass(window.width()), sizeClass(window.height())};
}

} // namespace KestrioKit
