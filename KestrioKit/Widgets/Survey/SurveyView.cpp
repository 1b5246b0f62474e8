#include "KestrioKit/Widgets/Survey/SurveyView.h"

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Controls/AccessibleRole.h"
#include "KestrioKit/Widgets/Controls/Button.h"
#include "KestrioKit/Widgets/Controls/CloseButton.h"
#include "KestrioKit/Widgets/Controls/PageControl.h"
#include "KestrioKit/Widgets/Controls/ScrollIndicator.h"
#include "KestrioKit/Widgets/Controls/ScrollView.h"
#include "KestrioKit/Widgets/Drawing/Drawing.h"
#include "KestrioKit/Widgets/Drawing/ViewEffect.h"
#include "KestrioKit/Widgets/Overlay/WindowMetrics.h"
#include "KestrioKit/Widgets/Survey/FinishSurveyView.h"
#include "KestrioKit/Widgets/Survey/QuestionView.h"

#include <QGuiApplication>
#include <QLayout>
#include <QPainter>

#include <algorithm>

namespace KestrioKit {

namespace {

namespace Constant {
constexpr int cornerRadius = screenMetrics.cardRadius;
constexpr int horizontalInset = KestrioUI::Padding::regular;
constexpr int topInset = KestrioUI::Padding::medium;
constexpr int bottomInset = KestrioUI::Padding::tiny;
constexpr int spacing = KestrioUI::Padding::regular;
constexpr int closeButtonInset = KestrioUI::Padding::regular;
} // namespace Constant

} // namespace

SurveyView::SurveyView(SurveyFlow &flow, const Clock &clock)
    : m_flow(flow),
      m_clock(clock),
      m_colors(flow.session()->palette()),
      m_questionContainerView(new ScrollView(m_colors)),
      m_scrollIndicator(new ScrollIndicator(*m_questionContainerView, m_colors)),
      m_pageControl(new PageControl(flow.pageCount(), flow.session()->texts(), m_colors)),
      m_closeButton(new CloseButton(flow.session()->texts().close, m_colors)) {
    setObjectName(screenIdentifiers.card());
    setAccessibleRole(this, QAccessible::Dialog);
    setAccessibleName(QGuiApplication::applicationDisplayName());
    const std::initializer_list<QWidget *> views{m_questionContainerView, m_pageControl,
                                                 m_scrollIndicator, m_closeButton};
    for (QWidget *const view : views)
        view->setParent(this);
    setupNewQuestionView();
    follow();
}

void SurveyView::follow() {
    connect(m_closeButton, &QAbstractButton::clicked, &m_flow, &SurveyFlow::close);
    connect(&m_flow, &SurveyFlow::currentPageChanged, this,
            [this] { m_pageControl->setCurrentPage(m_flow.currentPage()); });
    connect(&m_flow, &SurveyFlow::pageOpacityChanged, this,
            [this] { ViewEffect::setAlpha(m_currentQuestionView, m_flow.pageOpacity()); });
    connect(&m_flow, &SurveyFlow::containerOpacityChanged, this,
            [this] { ViewEffect::setAlpha(m_questionContainerView, m_flow.containerOpacity()); });
    connect(&m_flow, &SurveyFlow::pageLeft, this, &SurveyView::removeQuestionView);
    connect(&m_flow, &SurveyFlow::pageChanged, this, &SurveyView::replaceQuestionView);
    connect(&m_flow, &SurveyFlow::growthChanged, this, &SurveyView::heightChanged);
    connect(&m_flow, &SurveyFlow::pageBegun, this, &SurveyView::beginPage);
    connect(&m_flow, &SurveyFlow::answerableChanged, this, &SurveyView::updateEnabled);
    const SurveySession *const session = m_flow.session();
    connect(session, &SurveySession::appearanceChanged, this,
            [this, session] { changeAppearance(session->palette()); });
    updateEnabled();
}

void SurveyView::updateEnabled() {
    setEnabled(m_flow.isAnswerable());
    m_questionContainerView->setEnabled(m_flow.isPageAnswerable());
}

// Pages

QWidget *SurveyView::makeQuestionView() {
    if (m_flow.isFinished())
        return new FinishSurveyView(m_flow, m_colors);
    auto *const page =
        new QuestionView(m_flow.question(), m_flow.session()->texts(), m_colors, m_clock);
    connect(page, &QuestionView::answered, this, &SurveyView::answer);
    setAccessibleLabel(page, m_pageControl);
    return page;
}

void SurveyView::setupNewQuestionView() {
    m_currentQuestionView = makeQuestionView();
    m_questionContainerView->setContent(m_currentQuestionView);
}

void SurveyView::answer(const QVariant &value) {
    const auto *const control = qobject_cast<const Button *>(focusWidget());
    m_focusIsVisible = control && control->isFocusVisible();
    m_flow.answer(value);
}

void SurveyView::removeQuestionView() {
    m_previousHeight = m_questionContainerView->height();
    // Hiding the focused control would move the focus to the close button.
    parentWidget()->setFocus(Qt::OtherFocusReason);
    m_questionContainerView->hide();
    m_currentQuestionView->hide();
    // The call may come from a button on this page.
    m_currentQuestionView->deleteLater();
}

void SurveyView::replaceQuestionView() {
    setupNewQuestionView();
    if (m_flow.isFinished()) {
        const std::initializer_list<QWidget *> views{m_pageControl, m_closeButton};
        for (QWidget *const view : views) {
            ViewEffect::setAlpha(view, 0);
            // A transparent button could still be pressed.
            view->hide();
        }
    }
    m_questionContainerView->show();
}

// The font may have changed, too, and with it the size of every view. Children are updated before
// their parents because a parent's size depends on them.
void SurveyView::changeAppearance(const SurveyPalette &palette) {
    m_colors.change(palette);
    const QList<QWidget *> views = findChildren<QWidget *>();
    for (auto view = views.rbegin(); view != views.rend(); ++view) {
        if (QLayout *const layout = (*view)->layout())
            layout->activate();
        (*view)->updateGeometry();
        (*view)->update();
    }
    update();
    Q_EMIT heightChanged();
    m_questionContainerView->layOut();
}

// Focus

// If the page has no control, the page itself receives the focus.
void SurveyView::beginPage() {
    announce(m_currentQuestionView);
    const auto *const page = qobject_cast<const QuestionView *>(m_currentQuestionView);
    QWidget *const control = page ? page->firstControl() : nullptr;
    m_isBeginningPage = true;
    // Not every screen reader receives the announcement, but each reads the focused control.
    (control ? control : m_currentQuestionView)
        ->setFocus(m_focusIsVisible ? Qt::TabFocusReason : Qt::OtherFocusReason);
    m_isBeginningPage = false;
}

// A new page stays scrolled to its question, even if the first control is further down.
void SurveyView::reveal(const QWidget *view) {
    if (!m_isBeginningPage)
        m_questionContainerView->reveal(view);
}

void SurveyView::scroll(int key) {
    m_questionContainerView->scroll(key);
}

// Layout

int SurveyView::heightForWidth(int width) const {
    const int page = m_questionContainerView->contentHeight(width - 2 * Constant::horizontalInset);
    const int container = qRound(m_previousHeight + (page - m_previousHeight) * m_flow.growth());
    return Constant::topInset + container + Constant::spacing + m_pageControl->sizeHint().height() +
           Constant::bottomInset + safeAreaInsets(*this).bottom();
}

void SurveyView::layOut() {
    const QRect area =
        rect().adjusted(Constant::horizontalInset, Constant::topInset, -Constant::horizontalInset,
                        -Constant::bottomInset - safeAreaInsets(*this).bottom());
    const int dotsHeight = m_pageControl->sizeHint().height();
    m_questionContainerView->setGeometry(area.x(), area.y(), area.width(),
                                         area.height() - dotsHeight - Constant::spacing);
    const QSize dots(std::min(m_pageControl->sizeHint().width(), area.width()), dotsHeight);
    m_pageControl->setGeometry(area.x() + (area.width() - dots.width()) / 2,
                               area.bottom() + 1 - dots.height(), dots.width(), dots.height());

    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const QSize button = m_closeButton->sizeHint();
    const int trailing = width() - Constant::closeButtonInset - button.width();
    m_closeButton->setGeometry(isMirrored ? Constant::closeButtonInset : trailing,
                               Constant::closeButtonInset, button.width(), button.height());
    m_scrollIndicator->setGeometry(isMirrored ? 0 : width() - screenMetrics.scrollBarBreadth,
                                   area.y(), screenMetrics.scrollBarBreadth,
                                   m_questionContainerView->height());
    m_closeButton->raise();
}

// The part of the page that is scrolled out of view does not count.
int SurveyView::pageBottom() const {
    const int bottom =
        m_currentQuestionView->mapTo(this, QPoint(0, m_currentQuestionView->height())).y();
    return std::min(bottom, m_questionContainerView->geometry().bottom() + 1);
}

void SurveyView::resizeEvent(QResizeEvent *) {
    layOut();
}

void SurveyView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors->card);
    painter.drawRoundedRect(rect(), Constant::cornerRadius, Constant::cornerRadius);
    if (m_colors->cardBorder.alpha() > 0)
        drawRoundedBorder(painter, rect(), Constant::cornerRadius, KestrioUI::BorderWidth::b1,
                          m_colors->cardBorder);
}

} // namespace KestrioKit
