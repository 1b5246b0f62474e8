#include "KestrioKit/UI/ModalOverlay.h"

#include "KestrioKit/UI/Animation.h"
#include "KestrioKit/UI/OwnLook.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto thawDuration = 120ms;

/// What a widget that does not want it would hand on to the widget under it.
bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    // Refused, a key becomes a shortcut of the host's.
    case QEvent::ShortcutOverride:
    case QEvent::ToolTip:
    case QEvent::WhatsThis:
    case QEvent::StatusTip:
        return true;
    default:
        return false;
    }
}

} // namespace

ModalOverlay::ModalOverlay() {
    keepOwnLook(this);
    // Touches are not accepted, since Qt makes mouse events of those that nobody takes. They do not
    // go on to the host either.
    setAttribute(Qt::WA_NoMousePropagation);
    setAcceptDrops(true);
    setCursor(Qt::ArrowCursor);
    hide();
}

// What is left of it in the base's destructor takes no focus.
ModalOverlay::~ModalOverlay() {
    disconnect(m_focusConnection);
}

void ModalOverlay::cover(QWidget *window) {
    m_focusBefore = window->focusWidget();
    window->installEventFilter(this);
    setParent(window);
    // A native window of the host's would lie above anything that is none.
    if (windowHasNativeChildren())
        setAttribute(Qt::WA_NativeWindow);
    freeze();
    setGeometry(window->rect());
    layOut();
    for (QObject *const sibling : window->children()) {
        if (sibling->isWidgetType() && sibling != this)
            sibling->installEventFilter(this);
    }
    m_shield = std::make_unique<AccessibilityShield>(window, this);
    m_focusConnection = connect(qApp, &QApplication::focusChanged, this, &ModalOverlay::keepFocus);
    raise();
    show();
    takeFocus();
}

void ModalOverlay::uncover() {
    disconnect(m_focusConnection);
    window()->removeEventFilter(this);
    for (QObject *const sibling : window()->children())
        sibling->removeEventFilter(this);
    m_shield.reset();
    const bool hadFocus = window()->focusWidget() == this || isAncestorOf(window()->focusWidget());
    hide();
    if (hadFocus && m_focusBefore)
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    else if (hadFocus && window()->focusWidget())
        window()->focusWidget()->clearFocus();
}

// Input

// The base would paint all of it anew.
void ModalOverlay::focusInEvent(QFocusEvent *) {}
void ModalOverlay::focusOutEvent(QFocusEvent *) {}

bool ModalOverlay::event(QEvent *event) {
    const bool handled = QWidget::event(event);
    if (!isInput(event->type()))
        return handled;
    event->accept();
    return true;
}

void ModalOverlay::keyPressEvent(QKeyEvent *event) {
    keyPressed(event->key());
}

// Accepted on entering, what is dragged is not offered to the host; nothing can be dropped here.
void ModalOverlay::dragEnterEvent(QDragEnterEvent *event) {
    event->accept();
}

void ModalOverlay::dragMoveEvent(QDragMoveEvent *event) {
    event->ignore();
}

// Focus

bool ModalOverlay::takesTabFocus(const QWidget *view) const {
    return isAncestorOf(view) && (view->focusPolicy() & Qt::TabFocus) == Qt::TabFocus &&
           view->isVisible() && view->isEnabled();
}

bool ModalOverlay::focusNextPrevChild(bool next) {
    QWidget *const start = focusWidget() ? focusWidget() : this;
    QWidget *view = start;
    do {
        view = next ? view->nextInFocusChain() : view->previousInFocusChain();
    } while (view != start && !takesTabFocus(view));
    if (view != start)
        view->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

// The host may move its focus for reasons of its own; it gets there once the overlay is gone.
void ModalOverlay::keepFocus(QWidget *, QWidget *now) {
    if (now && (now == this || isAncestorOf(now))) {
        m_focusInside = now;
        focusMoved(now);
        return;
    }
    // With the focus nowhere, the window itself would get the keys.
    if (now ? now->window() != window() : !isActiveWindow())
        return;
    if (now)
        m_focusBefore = now;
    if (m_isTakingFocus)
        return;
    m_isTakingFocus = true;
    const bool canReturn = m_focusInside && m_focusInside->isVisible();
    (canReturn ? m_focusInside.data() : this)->setFocus(Qt::OtherFocusReason);
    m_isTakingFocus = false;
}

// The window

// Of the window, and of what lies beside the overlay, such as the scroll bars of a window that is a
// scroll area itself, which come to the top whenever it is laid out.
bool ModalOverlay::eventFilter(QObject *watched, QEvent *event) {
    const bool isWindow = watched == parent();
    if (event->type() == QEvent::Resize && isWindow) {
        setGeometry(window()->rect());
    } else if (event->type() == QEvent::Hide && isWindow && !event->spontaneous()) {
        windowHidden();
    } else if (event->type() == QEvent::ChildAdded) {
        QObject *const child = static_cast<QChildEvent *>(event)->child();
        // Not to be told of: a splitter would make a pane of the overlay.
        if (child == this)
            return true;
        if (isWindow && child->isWidgetType()) {
            child->installEventFilter(this);
            raise();
        }
    } else if (event->type() == QEvent::ZOrderChange && !isWindow) {
        raise();
    }
    return QWidget::eventFilter(watched, event);
}

void ModalOverlay::resizeEvent(QResizeEvent *) {
    if (!m_picture.isNull() && m_picture.deviceIndependentSize().toSize() != size())
        thaw();
    layOut();
}

bool ModalOverlay::windowHasNativeChildren() const {
    const auto views = window()->findChildren<QWidget *>();
    return std::ranges::any_of(views, [this](const QWidget *view) {
        return view != this && !view->isWindow() && view->testAttribute(Qt::WA_NativeWindow);
    });
}

// The picture

QPixmap ModalOverlay::pictureBehind() const {
    QWidget *const host = window();
    QPixmap picture(host->size() * devicePixelRatio());
    picture.setDevicePixelRatio(devicePixelRatio());
    picture.fill(host->palette().color(QPalette::Window));
    QPainter painter(&picture);
    host->render(&painter, {}, {}, DrawWindowBackground);
    for (QObject *const child : host->children()) {
        auto *const view = qobject_cast<QWidget *>(child);
        if (view && view != this && !view->isWindow() && view->isVisible())
            view->render(&painter, view->pos(), {}, DrawWindowBackground | DrawChildren);
    }
    return picture;
}

// What is on screen looks the same.
void ModalOverlay::freeze() {
    m_picture = pictureBehind();
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ModalOverlay::thaw() {
    if (testAttribute(Qt::WA_NativeWindow)) {
        m_picture = pictureBehind();
    } else {
        m_picture = {};
        setAttribute(Qt::WA_OpaquePaintEvent, false);
    }
    // What has changed meanwhile comes to light in strips: the host has to paint all of it.
    Animation::start(this, AnimationTiming::easing(thawDuration),
                     [this, top = 0](qreal way) mutable {
                         const int bottom = qRound(height() * way);
                         update(0, top, width(), bottom - top);
                         top = bottom;
                     });
}

void ModalOverlay::paintEvent(QPaintEvent *) {
    if (m_picture.isNull())
        return;
    // All of it, since parts of a picture do not begin at whole pixels at every ratio.
    QPainter(this).drawPixmap(QPoint(), m_picture);
}

} // namespace KestrioKit
