#include "KestrioKit/Widgets/Survey/FinishSurveyView.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/Pictograms.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Core/Session/SurveyFlow.h"
#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/ImageView.h"
#include "KestrioKit/Widgets/Controls/Label.h"
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

/// Shows `view` at `way`, from transparent and `scale` (0) to its full size (1).
void apply(QWidget *view, qreal scale, qreal way) {
    ViewEffect::setAlpha(view, std::clamp<qreal>(way, 0, 1));
    ViewEffect::setScale(view, scale + (1 - scale) * way);
}

} // namespace

FinishSurveyView::FinishSurveyView(SurveyFlow &flow, const SurveyColors &colors)
    : m_flow(flow),
      m_imageView(new ImageView(checkmarkInCircle(colors), colors)),
      m_label(new Label(flow.session()->texts().thanks, TextStyle::title2, colors,
                        &SurveyPalette::text, Qt::AlignHCenter)) {
    setAccessibleRole(this, QAccessible::Grouping);
    setAccessibleName(m_label->text());
    constexpr int inset = KestrioUI::Padding::tiny;
    auto *const stackView = new QVBoxLayout(this);
    stackView->setContentsMargins(inset, inset, inset, inset);
    stackView->setSpacing(KestrioUI::Padding::regular);
    stackView->addWidget(m_imageView, 0, Qt::AlignHCenter);
    stackView->addWidget(m_label);
    connect(&flow, &SurveyFlow::thanksLabelChanged, this,
            [this] { apply(m_label, screenMetrics.thanksLabelScale, m_flow.thanksLabel()); });
    connect(&flow, &SurveyFlow::thanksImageChanged, this,
            [this] { apply(m_imageView, screenMetrics.thanksImageScale, m_flow.thanksImage()); });
}

void FinishSurveyView::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    m_flow.thank();
}

} // namespace KestrioKit
