#pragma once

#include <QPointer>
#include <QVariantAnimation>

#include <chrono>
#include <functional>

class QWidget;

namespace KestrioKit {

/// Describes how an animation progresses over time.
struct AnimationTiming {
    /// Length of the movement, without the delay.
    std::chrono::milliseconds duration{0};
    /// Time before the movement starts.
    std::chrono::milliseconds delay{0};
    /// Maps elapsed time (0 to 1) to progress. The progress at 1 must be 1. It may exceed 1 before.
    std::function<qreal(qreal time)> curve = {};

    /// Returns a timing that starts and ends slowly, without a delay.
    static AnimationTiming easing(std::chrono::milliseconds duration);

    /// Returns the timing of a spring that comes to rest within `duration`. `damping` must be above
    /// 0 and below 1; a lower value overshoots more. `initialVelocity` is in full distances per
    /// second.
    static AnimationTiming spring(std::chrono::milliseconds duration,
                                  std::chrono::milliseconds delay, qreal damping,
                                  qreal initialVelocity);
};

/// Animates a view from one state to another. `start()` calls `apply` with 0 immediately, even if
/// there is a delay. `apply` is then called with the progress, at last with 1, followed by
/// `finished`. If the view is hidden or the platform asks for less motion (the style's
/// `SH_Widget_Animation_Duration` is 0), `start()` calls `apply(1)` and `finished` before it
/// returns.
///
/// The view owns the animation. Deleting the animation earlier stops it, and no callback is called
/// any more. Use it on the main thread only.
class Animation final : public QVariantAnimation {
    Q_OBJECT

public:
    /// Shows the state at `way`, the progress from 0 (start) to 1 (end).
    using Apply = std::function<void(qreal way)>;

    /// Starts an animation of `view`. Returns the animation, which deletes itself at its end, or
    /// null if it has already ended.
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
