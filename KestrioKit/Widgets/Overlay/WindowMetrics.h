#pragma once

#include <QMargins>
#include <QSize>

class QWidget;

namespace KestrioKit {

/// How much space a window offers in one direction.
enum class SizeClass { compact, regular };

/// The size classes of a window in both directions.
struct SizeClasses {
    SizeClass horizontal;
    SizeClass vertical;

    /// Returns whether both directions are regular.
    bool isRegular() const {
        return horizontal == SizeClass::regular && vertical == SizeClass::regular;
    }
};

/// Returns the size classes of a window of that size. A direction is regular from 600
/// device-independent pixels.
SizeClasses sizeClasses(const QSize &window);

/// Returns how far rounded screen corners, cut-outs and system bars reach into the overlay at each
/// edge, in device-independent pixels. `view` is the overlay or one of its descendants.
QMargins safeAreaInsets(const QWidget &view);

} // namespace KestrioKit
