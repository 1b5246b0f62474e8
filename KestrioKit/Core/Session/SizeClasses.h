#pragma once

#include "KestrioKit/KestrioKitExport.h"

#include <QSize>

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
KESTRIOKIT_EXPORT SizeClasses sizeClasses(const QSize &window);

} // namespace KestrioKit
