#include "KestrioKit/Widgets/Drawing/Animate.h"

#include <QApplication>
#include <QStyle>
#include <QWidget>

namespace KestrioKit {

// The platform's preference is in the application's style. The view's own style does not know it.
bool isAnimated(const QWidget *view) {
    return view->isVisible() &&
           QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
}

Animation *animate(QWidget *view, const AnimationTiming &timing, Animation::Apply apply,
                   std::function<void()> finished) {
    return Animation::start(view, isAnimated(view), timing, std::move(apply), std::move(finished));
}

} // namespace KestrioKit
