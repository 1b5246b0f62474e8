#pragma once

#include "KestrioKit/KestrioKitExport.h"

#include <QtGlobal>

namespace KestrioKit {

/// Returns the position of the control to which `key`, a `Qt::Key`, moves the focus among `count`
/// adjacent controls. Returns `position` if the key does not move it: beyond the ends, it scrolls
/// the page. Positions count from 0. `isMirrored` swaps left and right.
KESTRIOKIT_EXPORT qsizetype arrowKeyTarget(int key, qsizetype position, qsizetype count,
                                           bool isMirrored);

} // namespace KestrioKit
