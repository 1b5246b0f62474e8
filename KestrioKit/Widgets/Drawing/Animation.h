#pragma once

#include "KestrioKit/Core/Session/AnimationTiming.h"

#include <QPointer>
#include <QVariantAnimation>

#include <functional>

class QWidget;

namespace KestrioKit {

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
