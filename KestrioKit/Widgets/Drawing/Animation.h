#pragma once

#include <QPointer>
#include <QVariantAnimation>

#include <chrono>
#include <functional>

class QWidget;

namespace KestrioKit {

/// How a movement goes on in time.
struct AnimationTiming {
    std::chrono::milliseconds duration{0};
    std::chrono::milliseconds delay{0};
    /// From the part of the duration that has passed, 0 to 1, to the part of the way; 1 at 1.
    std::function<qreal(qreal time)> curve = {};

    /// Slow at both ends.
    static AnimationTiming easing(std::chrono::milliseconds duration);

    /// A spring that comes to rest within `duration`. The lower the `damping`, above 0 and below
    /// 1, the more it overshoots; `initialVelocity` is in whole ways per second.
    static AnimationTiming spring(std::chrono::milliseconds duration,
                                  std::chrono::milliseconds delay, qreal damping,
                                  qreal initialVelocity);
};

/// Takes a view from one state to another. `apply` is called with 0 at the start (at once, also
/// when there is a delay), with parts of the way meanwhile, and with 1 at the end; `finished` after
/// that. Where the view is not on screen, or the platform asks for less motion (no duration for
/// `QStyle::SH_Widget_Animation_Duration`), both happen at once, before `start()` returns.
///
/// Belongs to the view and goes with it, or may be deleted before; then nothing more is called. For
/// the main thread.
class Animation final : public QVariantAnimation {
    Q_OBJECT

public:
    using Apply = std::function<void(qreal way)>;

    /// What runs deletes itself at its end; null when it has ended already.
    static Animation *start(QWidget *view, const AnimationTiming &timing, Apply apply,
                            std::function<void()> finished = {});

protected:
    void updateCurrentValue(const QVariant &value) override;

private:
    Animation(QWidget *view, const AnimationTiming &timing, Apply apply);

    AnimationTiming m_timing;
    Apply m_apply;
};

} // namespace KestrioKit
