#pragma once

#include "KestrioKit/KestrioKitExport.h"

#include <QtGlobal>

#include <chrono>
#include <functional>

namespace KestrioKit {

/// Describes how an animation progresses over time.
struct KESTRIOKIT_EXPORT AnimationTiming {
    /// Length of the movement, without the delay.
    std::chrono::milliseconds duration{0};
    /// Time before the movement starts.
    std::chrono::milliseconds delay{0};
    /// Maps elapsed time (0 to 1) to progress. The progress at 1 must be 1. It may exceed 1 before.
    std::function<qreal(qreal time)> curve = {};

    /// Returns a timing that starts and ends slowly, without a delay.
    static AnimationTiming easing(std::chrono::milliseconds duration);

    /// Returns the timing of the card's way in, a spring.
    static AnimationTiming entry();

    /// Returns the timings of the springs that show the thank-you page's text and image.
    static AnimationTiming thanksLabel();
    static AnimationTiming thanksImage();
};

} // namespace KestrioKit
