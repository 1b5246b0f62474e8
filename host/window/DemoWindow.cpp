#include "host/window/DemoWindow.h"

#include "host/window/AdaptiveRow.h"
#include "host/window/ControlPanel.h"
#include "host/window/DemoStyle.h"
#include "host/window/OrderForm.h"

#include <QBoxLayout>
#include <QLabel>
#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize initialSize(1280, 800);
constexpr int margin = 16;
constexpr int spacing = 12;
/// The width in pixels from which the form and the panel are side by side.
constexpr int wideWidth = 900;
constexpr int formStretch = 7;
constexpr int panelStretch = 5;
constexpr auto orderEvent = "Checkout Finished"_L1;

} // namespace

DemoWindow::DemoWindow() {
    setWindowTitle(u"Corner Shop"_s);
    auto *const scrollArea = new QScrollArea;
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setFocusPolicy(Qt::NoFocus);
    scrollArea->setWidgetResizable(true);
    scrollArea->setWidget(makePage());
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->addWidget(scrollArea);
    resize(initialSize);
}

QWidget *DemoWindow::makePage() {
    auto *const page = new QWidget;
    page->setStyleSheet(demoStyleSheet());
    auto *const column = new QVBoxLayout(page);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addWidget(inLook(new QLabel(windowTitle()), Look::title));
    auto *const row = new AdaptiveRow(wideWidth, spacing);
    auto *const form = new OrderForm;
    auto *const panel = new ControlPanel(this);
    connect(form, &OrderForm::orderPlaced, panel, [panel] { panel->askAndPresent(orderEvent); });
    row->addWidget(form, formStretch);
    row->addWidget(panel, panelStretch);
    column->addWidget(row, 1);
    return page;
}
