#pragma once

#include "KestrioKit/Core/Session/Animation.h"

class QWidget;

namespace KestrioKit {

/// Returns whether the visitor can see movements of `view` and wants them. The view must be
/// visible, and the platform must not ask for less motion (the style's
/// `SH_Widget_Animation_Duration` is 0). Call it on the main thread.
bool isAnimated(const QWidget *view);

/// Starts an animation that `view` owns, as `Animation::start()` does. It ends immediately unless
/// `isAnimated(view)`. Use it on the main thread only.
Animation *animate(QWidget *view, const AnimationTiming &timing, Animation::Apply apply,
                   std::function<void()> finished = {});

} // namespace KestrioKit
