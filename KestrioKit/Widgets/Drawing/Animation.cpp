#include "KestrioKit/Widgets/Drawing/Animation.h"

#include <QApplication>
#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace KestrioKit {

namespace {

// The platform's preference is in the application's style. The view's own style does not know it.
bool wantsLessMotion() {
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) <= 0;
}

} // namespace

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
