#include "KestrioKit/Widgets/Survey/FinishSurveyView.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/Pictograms.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/ImageView.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Drawing/Animate.h"
#include "KestrioKit/Widgets/Drawing/ViewEffect.h"

#include <QBoxLayout>

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

namespace Constant {
constexpr QSize circleSize(screenMetrics.thanksCircleSize, screenMetrics.thanksCircleSize);
} // namespace Constant

DrawnImage checkmarkInCircle(const SurveyColors &colors) {
    return {Constant::circleSize, [&colors](QPainter &painter) {
                drawThanks(painter, colors.palette());
            }};
}

void springIn(QWidget *view, qreal scale, const AnimationTiming &timing) {
    animate(view, timing, [view, scale](qreal way) {
        ViewEffect::setAlpha(view, std::clamp<qreal>(way, 0, 1));
        ViewEffect::setScale(view, scale + (1 - scale) * way);
    });
}

} // namespace

FinishSurveyView::FinishSurveyView(const QString &text, const SurveyColors &colors)
    : m_imageView(new ImageView(checkmarkInCircle(colors), colors)),
      m_label(new Label(text, TextStyle::title2, colors, &SurveyPalette::text, Qt::AlignHCenter)) {
    setAccessibleRole(this, QAccessible::Grouping);
    setAccessibleName(m_label->text());
    constexpr int inset = KestrioUI::Padding::tiny;
    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins(inset, inset, inset, inset);
    stackView->setSpacing(KestrioUI::Padding::regular);
    stackView->addWidget(m_imageView, 0, Qt::AlignHCenter);
    stackView->addWidget(m_label);
}

void FinishSurveyView::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    if (!m_hasAppeared)
        animateIn();
    m_hasAppeared = true;
}

void FinishSurveyView::animateIn() {
    springIn(m_label, screenMetrics.thanksLabelScale, AnimationTiming::thanksLabel());
    springIn(m_imageView, screenMetrics.thanksImageScale, AnimationTiming::thanksImage());
}

} // namespace KestrioKit
