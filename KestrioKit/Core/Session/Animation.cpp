#include "KestrioKit/Core/Session/Animation.h"

#include <algorithm>

namespace KestrioKit {

Animation::Animation(QObject *owner, const AnimationTiming &timing, Apply apply)
    : QVariantAnimation(owner), m_timing(timing), m_apply(std::move(apply)) {
    const auto total = timing.delay + timing.duration;
    setStartValue(qreal(0));
    setEndValue(qreal(total.count()));
    setDuration(int(total.count()));
}

Animation *Animation::start(QObject *owner, bool isAnimated, const AnimationTiming &timing,
                            Apply apply, std::function<void()> finished) {
    if (!isAnimated) {
        apply(1);
        if (finished)
            finished();
        return nullptr;
    }
    apply(0);
    auto *const animation = new Animation(owner, timing, std::move(apply));
    if (finished)
        connect(animation, &QAbstractAnimation::finished, owner, std::move(finished));
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
