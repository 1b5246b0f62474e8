#pragma once

#include "KestrioKit/Core/Session/Animation.h"

class QWidget;

namespace KestrioKit {

/// Starts an animation that `view` owns, as `Animation::start()` does. If the view is hidden or the
/// platform asks for less motion (the style's `SH_Widget_Animation_Duration` is 0), the animation
/// ends immediately. Use it on the main thread only.
Animation *animate(QWidget *view, const AnimationTiming &timing, Animation::Apply apply,
                   std::function<void()> finished = {});

} // namespace KestrioKit
