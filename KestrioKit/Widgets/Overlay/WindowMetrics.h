#pragma once

#include <QMargins>

class QWidget;

namespace KestrioKit {

/// Returns how far rounded screen corners, cut-outs and system bars reach into the overlay at each
/// edge, in device-independent pixels. `view` is the overlay or one of its descendants.
QMargins safeAreaInsets(const QWidget &view);

} // namespace KestrioKit
