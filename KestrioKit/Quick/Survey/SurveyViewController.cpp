#include "KestrioKit/Quick/Survey/SurveyViewController.h"

#include "KestrioKit/Core/Session/Animation.h"
#include "KestrioKit/Core/Session/SizeClasses.h"
#include "KestrioKit/Quick/Controls/ButtonItem.h"
#include "KestrioKit/Quick/Controls/PageItem.h"
#include "KestrioKit/Quick/Survey/ScreenEngine.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <algorithm>

namespace KestrioKit::Quick {

using namespace Qt::StringLiterals;

SurveyViewController::SurveyViewController(std::unique_ptr<SurveySession> session,
                                           const Clock &clock)
    : m_style(*session, clock, this),
      m_flow(std::move(session), [this] { return isVisible() && m_style.isAnimated(); }),
      m_backgroundView(create(u"BackgroundView"_s)),
      m_surveyView(create(u"SurveyView"_s)) {
    connect(m_surveyView, &QQuickItem::implicitHeightChanged, this, &SurveyViewController::layOut);
    connect(&m_flow, &SurveyFlow::cardMoved, this, &SurveyViewController::layOut);
    connect(&m_flow, &SurveyFlow::currentPageChanged, this, &SurveyViewController::noteFocus);
    connect(&m_flow, &SurveyFlow::questionPresented, this,
            &SurveyViewController::visibilityChanged);
    connect(&m_flow, &SurveyFlow::pageBegun, this, &SurveyViewController::beginPage);
    connect(&m_flow, &SurveyFlow::leaving, this, &SurveyViewController::leave);
    connect(&m_flow, &SurveyFlow::over, this, &SurveyViewController::end);
    connect(&m_keyboardObserver, &KeyboardObserver::changed, this,
            &SurveyViewController::keyboardChanged);
}

// The items must be gone before what they are bound to.
SurveyViewController::~SurveyViewController() {
    disconnect(&m_flow, nullptr, this, nullptr);
    delete m_surveyView;
    delete m_backgroundView;
}

QQuickItem *SurveyViewController::create(const QString &screen) {
    return ScreenEngine::shared().create(
        screen,
        {{u"style"_s, QVariant::fromValue(&m_style)}, {u"flow"_s, QVariant::fromValue(&m_flow)}},
        this);
}

void SurveyViewController::present(QQuickItem *area) {
    cover(area);
    // Beside the card in an item of the host's, the host stays usable.
    m_backgroundView->setVisible(isModal());
    m_flow.begin();
}

bool SurveyViewController::isStill() const {
    return m_flow.findChildren<Animation *>().isEmpty();
}

// Layout

void SurveyViewController::layOut() {
    const QSize area = size().toSize();
    m_backgroundView->setSize(area);
    const int cardWidth = std::min(area.width(), screenMetrics.cardMaxWidth);
    const int padding = sizeClasses(area).isRegular() ? screenMetrics.cardBottomPadding : 0;
    const int bottom = area.height() - padding;
    m_surveyView->setWidth(cardWidth);
    const int cardHeight = std::min(qRound(m_surveyView->implicitHeight()), bottom);
    const qreal parked = area.height();
    const qreal top =
        parked + (bottom - cardHeight - parked) * m_flow.cardPosition() - m_flow.keyboardOffset();
    const int left = (area.width() - cardWidth) / 2;
    m_surveyView->setHeight(cardHeight);
    m_surveyView->setPosition(QPoint(left, qRound(top)));
}

void SurveyViewController::keyboardChanged() {
    const int covered = KeyboardObserver::coveredHeight(qRound(height()));
    // The card rises only until the end of the page is above the keyboard.
    const qreal belowPage = m_surveyView->height() - m_surveyView->property("pageBottom").toReal();
    m_flow.raise(covered > 0 ? std::max(screenMetrics.tinyPadding + covered - belowPage, 0.0) : 0);
}

// A question counts as seen only when the window actually shows it.
void SurveyViewController::visibilityChanged() {
    if (isVisible() && window() && window()->isVisible() &&
        window()->visibility() != QWindow::Minimized)
        m_flow.appear();
}

// Pages

// A visitor who answers with the keyboard sees the focus on the next page, too.
void SurveyViewController::noteFocus() {
    if (!window())
        return;
    const auto *const control = qobject_cast<const ButtonItem *>(window()->activeFocusItem());
    m_focusReason =
        control && control->isFocusVisible() ? Qt::TabFocusReason : Qt::OtherFocusReason;
}

void SurveyViewController::beginPage() {
    auto *const page = m_surveyView->property("page").value<PageItem *>();
    QQuickItem *const control = page->firstControl();
    QAccessibleEvent announcement(page, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
    // In an item of the host's, the visitor may be busy elsewhere.
    if (!isModal() && !hasFocusInside())
        return;
    m_isBeginningPage = true;
    // Not every screen reader receives the announcement, but each reads the focused control.
    (control ? control : page)->forceActiveFocus(m_focusReason);
    m_isBeginningPage = false;
}

// Scrolling would move the pressed control away from under the pointer. A new page stays scrolled
// to its question, even if the first control is further down.
void SurveyViewController::focusMoved(QQuickItem *item) {
    if (!m_isBeginningPage && QGuiApplication::mouseButtons() == Qt::NoButton)
        reveal(*item);
}

void SurveyViewController::reveal(const QQuickItem &item) {
    auto *const area = m_surveyView->property("scrollArea").value<QQuickItem *>();
    if (!area->isAncestorOf(&item))
        return;
    const qreal offset = area->property("contentY").toReal();
    const qreal margin = screenMetrics.revealMargin;
    const qreal top = item.mapToItem(area, QPointF()).y() - margin;
    const qreal bottom = top + item.height() + 2 * margin;
    if (top < 0 || item.height() > area->height())
        scrollTo(offset + top);
    else if (bottom > area->height())
        scrollTo(offset + bottom - area->height());
}

void SurveyViewController::scrollTo(qreal offset) {
    auto *const area = m_surveyView->property("scrollArea").value<QQuickItem *>();
    const qreal maximum = std::max(area->property("contentHeight").toReal() - area->height(), 0.0);
    area->setProperty("contentY", std::clamp(offset, 0.0, maximum));
}

// Keys that no control handles

void SurveyViewController::keyPressEvent(QKeyEvent *event) {
    if (!m_flow.isAnswerable())
        return;
    if (event->key() != Qt::Key_Escape)
        scroll(event->key());
    // A key that auto-repeats was pressed for something else.
    else if (!m_flow.isFinished() && !event->isAutoRepeat())
        m_flow.close();
}

void SurveyViewController::scroll(int key) {
    const auto *const area = m_surveyView->property("scrollArea").value<QQuickItem *>();
    const qreal offset = area->property("contentY").toReal();
    switch (key) {
    case Qt::Key_PageUp:
        return scrollTo(offset - area->height());
    case Qt::Key_PageDown:
        return scrollTo(offset + area->height());
    case Qt::Key_Up:
        return scrollTo(offset - screenMetrics.scrollLine);
    case Qt::Key_Down:
        return scrollTo(offset + screenMetrics.scrollLine);
    case Qt::Key_Home:
        return scrollTo(0);
    case Qt::Key_End:
        return scrollTo(area->property("contentHeight").toReal());
    default:
        return;
    }
}

// Dismissal

void SurveyViewController::windowGone() {
    m_flow.windowGone();
}

void SurveyViewController::leave() {
    // In an item of the host's, the visitor may be busy elsewhere.
    if (!isModal() && !hasFocusInside())
        return;
    forceActiveFocus(Qt::OtherFocusReason);
    KeyboardObserver::hide();
}

void SurveyViewController::end() {
    uncover();
    setParentItem(nullptr);
    deleteLater();
}

} // namespace KestrioKit::Quick
