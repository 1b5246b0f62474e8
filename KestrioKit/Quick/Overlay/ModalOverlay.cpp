#include "KestrioKit/Quick/Overlay/ModalOverlay.h"

#include <QCursor>
#include <QKeyEvent>
#include <QPointerEvent>

namespace KestrioKit::Quick {

namespace {

/// Above all items of hosts. The popups of Qt Quick Controls are at 1,000,001.
constexpr qreal topmost = 2'000'000;

} // namespace

ModalOverlay::ModalOverlay() {
    setFlag(ItemIsFocusScope);
    setFiltersChildMouseEvents(true);
    setCursor(Qt::ArrowCursor);
    setZ(topmost);
    setVisible(false);
    connect(&m_focus, &FocusKeeper::moved, this, &ModalOverlay::focusMoved);
    connect(&m_absence, &WindowAbsence::ended, this, &ModalOverlay::place);
    connect(&m_absence, &WindowAbsence::lasted, this, &ModalOverlay::windowGone);
}

ModalOverlay::~ModalOverlay() {
    detach();
}

void ModalOverlay::cover(QQuickItem *area) {
    m_area = area;
    setParentItem(area);
    connect(area, &QQuickItem::widthChanged, this, &ModalOverlay::place);
    connect(area, &QQuickItem::heightChanged, this, &ModalOverlay::place);
    connect(area, &QObject::destroyed, this, &ModalOverlay::windowGone);
    place();
}

void ModalOverlay::uncover() {
    m_focus.end();
    detach();
    setVisible(false);
}

bool ModalOverlay::isModal() const {
    return m_window && m_area == m_window->contentItem();
}

void ModalOverlay::attach(QQuickWindow *window) {
    m_window = window;
    m_absence.watch(window);
    m_focus.begin(window, isModal());
    connect(window, &QWindow::windowStateChanged, this, &ModalOverlay::visibilityChanged);
    if (!isModal())
        return;
    window->installEventFilter(this);
    m_shield = std::make_unique<AccessibilityShield>(window, this);
}

void ModalOverlay::detach() {
    m_absence.watch(nullptr);
    m_shield.reset();
    if (!m_window)
        return;
    m_window->removeEventFilter(this);
    m_window->disconnect(this);
    m_window = nullptr;
}

void ModalOverlay::place() {
    if (!m_area)
        return;
    setSize(m_area->size());
    layOut();
    setVisible(true);
    visibilityChanged();
}

// A host may move the area to another window.
void ModalOverlay::itemChange(ItemChange change, const ItemChangeData &data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged && data.boolValue)
        visibilityChanged();
    if (change != ItemSceneChange || data.window == m_window)
        return;
    detach();
    if (data.window)
        attach(data.window);
}

void ModalOverlay::geometryChange(const QRectF &now, const QRectF &before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        layOut();
}

// Input

// After an item has accepted a press, Qt Quick still offers the event to the handlers of the items
// under it, such as the host's `DragHandler`. It stops only if a filter has taken the event, so the
// filter delivers the press itself.
bool ModalOverlay::childMouseEventFilter(QQuickItem *receiver, QEvent *event) {
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick)
        return false;
    auto *const press = static_cast<QMouseEvent *>(event);
    press->ignore();
    if (receiver->isEnabled() && receiver->acceptedMouseButtons().testFlag(press->button())) {
        press->accept();
        QCoreApplication::sendEvent(receiver, press);
    }
    if (press->isAccepted())
        press->setExclusiveGrabber(press->point(0), receiver);
    return true;
}

bool ModalOverlay::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    // Event filters of the host's popups would close the popups.
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return watched->event(event);
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return filterTouch(event);
    // Qt makes mouse events from unaccepted events of a tablet.
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::DragLeave:
    case QEvent::Drop:
        event->ignore();
        return true;
    case QEvent::ShortcutOverride:
        event->accept();
        return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return filterKey(event);
    default:
        return false;
    }
}

// Qt makes mouse events from unaccepted touches. Touches that began before the overlay did belong
// to the host.
bool ModalOverlay::filterTouch(QEvent *event) {
    if (event->type() == QEvent::TouchBegin)
        m_ownsTouches = true;
    if (!m_ownsTouches)
        return false;
    event->ignore();
    return true;
}

bool ModalOverlay::filterKey(QEvent *event) {
    if (!m_focus.isInside())
        m_focus.restore();
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Tab && key != Qt::Key_Backtab)
        return false;
    if (event->type() == QEvent::KeyPress)
        m_focus.moveToNext(key == Qt::Key_Tab);
    return true;
}

} // namespace KestrioKit::Quick
