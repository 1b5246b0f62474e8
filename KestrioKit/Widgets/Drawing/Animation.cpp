#include "KestrioKit/Widgets/Drawing/Animation.h"

#include <QApplication>
#include <QEasingCurve>
#include <QStyle>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace KestrioKit {

namespace {

/// Distance of a spring from its rest at the end of its duration, as a fraction of the full
/// distance.
constexpr qreal restingDistance = 0.001;

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

qreal secondsOf(std::chrono::milliseconds duration) {
    return std::chrono::duration<qreal>(duration).count();
}

// The platform's preference is in the application's style. The view's own style does not know it.
bool wantsLessMotion() {
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) <= 0;
}

} // namespace

AnimationTiming AnimationTiming::easing(std::chrono::milliseconds duration) {
    return {duration, {}, [curve = QEasingCurve(QEasingCurve::InOutQuad)](qreal time) {
                return curve.valueForProgress(time);
            }};
}

AnimationTiming AnimationTiming::spring(std::chrono::milliseconds duration,
                                        std::chrono::milliseconds delay, qreal damping,
                                        qreal initialVelocity) {
    const qreal seconds = secondsOf(duration);
    return {duration, delay,
            [seconds, spring = Spring(seconds, damping, initialVelocity)](qreal time) {
                return time < 1 ? spring.position(time * seconds) : 1;
            }};
}

Animation::Animation(QWidget *view, const AnimationTiming &timing, Apply apply)
    : QVariantAnimation(view), m_timing(timing), m_apply(std::move(apply)) {
    const auto total = timing.delay + timing.duration;
    setStartValue(qreal(0));
    setEndValue(qreal(total.count()));
    setDuration(int(total.count()));
}

Animation *Animation::start(QWidget *view, const AnimationTiming &timing, Apply apply,
                            std::function<void()> finished) {
    if (!view->isVisible() || wantsLessMotion()) {
        apply(1);
        if (finished)
            finished();
        return nullptr;
    }
    apply(0);
    auto *const animation = new Animation(view, timing, std::move(apply));
    if (finished)
        connect(animation, &QAbstractAnimation::finished, view, std::move(finished));
    static_cast<QAbstractAnimation *>(animation)->start(DeleteWhenStopped);
    return animation;
}

void Animation::updateCurrentValue(const QVariant &value) {
    const qreal passed = value.toReal() - qreal(m_timing.delay.count());
    if (passed < 0)
        m_apply(0);
    else
        m_apply(m_timing.curve(std::min<qreal>(passed / qreal(m_timing.duration.count()), 1)));
}

} // namespace KestrioKit
