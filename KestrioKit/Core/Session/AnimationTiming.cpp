#include "KestrioKit/Core/Session/AnimationTiming.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <QEasingCurve>

#include <cmath>

namespace KestrioKit {

namespace {

/// Distance of a spring from its rest at the end of its duration, as a fraction of the full
/// distance.
constexpr qreal restingDistance = 0.001;
/// A lower damping overshoots more. It must be above 0 and below 1.
constexpr qreal springDamping = 0.7;
/// In full distances per second.
constexpr qreal entryVelocity = 0.4;
constexpr qreal thanksVelocity = 0;

/// An underdamped harmonic oscillator that is released at the full distance from its rest.
struct Spring {
    qreal decay;
    qreal frequency;
    qreal push;

    Spring(qreal seconds, qreal damping, qreal initialVelocity)
        : decay(-std::log(restingDistance) / seconds),
          frequency(decay / damping * std::sqrt(1 - damping * damping)),
          push((decay - initialVelocity) / frequency) {}

    qreal position(qreal seconds) const {
        return 1 - std::exp(-decay * seconds) *
                       (std::cos(frequency * seconds) + push * std::sin(frequency * seconds));
    }
};

/// Returns the timing of a spring that comes to rest within `duration`.
AnimationTiming springTiming(std::chrono::milliseconds duration, std::chrono::milliseconds delay,
                             qreal initialVelocity) {
    const qreal seconds = std::chrono::duration<qreal>(duration).count();
    return {duration, delay,
            [seconds, spring = Spring(seconds, springDamping, initialVelocity)](qreal time) {
                return time < 1 ? spring.position(time * seconds) : 1;
            }};
}

} // namespace

AnimationTiming AnimationTiming::easing(std::chrono::milliseconds duration) {
    return {duration, {}, [curve = QEasingCurve(QEasingCurve::InOutQuad)](qreal time) {
                return curve.valueForProgress(time);
            }};
}

AnimationTiming AnimationTiming::entry() {
    return springTiming(screenMetrics.entry, {}, entryVelocity);
}

AnimationTiming AnimationTiming::thanksLabel() {
    return springTiming(screenMetrics.thanksLabel, screenMetrics.thanksLabelWait, thanksVelocity);
}

AnimationTiming AnimationTiming::thanksImage() {
    return springTiming(screenMetrics.thanksImage, screenMetrics.thanksImageWait, thanksVelocity);
}

} // namespace KestrioKit
