#include "KestrioKit/Widgets/Drawing/Animate.h"

#include <QApplication>
#include <QStyle>
#include <QWidget>

namespace KestrioKit {

namespace {

// The platform's preference is in the application's style. The view's own style does not know it.
bool wantsLessMotion() {
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) <= 0;
}

} // namespace

Animation *animate(QWidget *view, const AnimationTiming &timing, Animation::Apply apply,
                   std::function<void()> finished) {
    return Animation::start(view, view->isVisible() && !wantsLessMotion(), timing, std::move(apply),
                            std::move(finished));
}

} // namespace KestrioKit
