#pragma once

#include <QMargins>
#include <QSize>

class QWidget;

namespace KestrioKit {

/// How much room a window offers in one direction.
enum class SizeClass { compact, regular };

struct SizeClasses {
    SizeClass horizontal;
    SizeClass vertical;

    bool isRegular() const {
        return horizontal == SizeClass::regular && vertical == SizeClass::regular;
    }
};

/// Regular from 600 device-independent pixels, in each direction on its own.
SizeClasses sizeClasses(const QSize &window);

/// What the screen's corners, cut-outs and system bars take from each edge of the overlay that
/// `view` is, or is on.
QMargins safeAreaInsets(const QWidget &view);

} // namespace KestrioKit
