#include "KestrioKit/Widgets/Overlay/ModalOverlay.h"

#include "KestrioKit/Widgets/Drawing/Animate.h"
#include "KestrioKit/Widgets/Drawing/OwnLook.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QPainter>

#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto thawDuration = 120ms;

/// Returns whether a widget that ignores such an event passes it on to its parent.
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
    // A key that is not accepted here can trigger a shortcut of the host.
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
    // Touches stay unaccepted so that Qt turns them into mouse events. The attribute keeps both
    // from the host.
    setAttribute(Qt::WA_NoMousePropagation);
    setAcceptDrops(true);
    setCursor(Qt::ArrowCursor);
    hide();
    connect(&m_focus, &FocusKeeper::moved, this, &ModalOverlay::focusMoved);
    connect(&m_nativeCover, &NativeCover::raised, this, &ModalOverlay::freeze);
    connect(&m_absence, &WindowAbsence::ended, this, &ModalOverlay::windowReturned);
    connect(&m_absence, &WindowAbsence::lasted, this, &ModalOverlay::absenceLasted);
}

void ModalOverlay::cover(QWidget *window) {
    attach(window);
    freeze();
    place();
}

void ModalOverlay::attach(QWidget *window) {
    window->installEventFilter(this);
    m_absence.watch(window);
    setParent(window);
    m_focus.begin();
    m_embeddedPictures = embeddedPictures(this);
    m_nativeCover.begin();
    for (QObject *const sibling : window->children()) {
        if (sibling->isWidgetType() && sibling != this)
            sibling->installEventFilter(this);
    }
    m_shield = std::make_unique<AccessibilityShield>(window, this);
}

void ModalOverlay::detach() {
    m_nativeCover.end();
    m_absence.watch(nullptr);
    parentWidget()->removeEventFilter(this);
    for (QObject *const sibling : parentWidget()->children())
        sibling->removeEventFilter(this);
    m_shield.reset();
}

void ModalOverlay::place() {
    setGeometry(parentWidget()->rect());
    layOut();
    raise();
    show();
    visibilityChanged();
}

void ModalOverlay::uncover() {
    detach();
    m_focus.end();
    hide();
}

// With new flags, the window also has a new native window. A dock that returns to its main window
// is no longer a window at all.
void ModalOverlay::windowReturned() {
    QWidget *const host = window();
    if (host == parentWidget()) {
        m_nativeCover.begin();
    } else {
        detach();
        delete m_shape;
        attach(host);
    }
    place();
    QMetaObject::invokeMethod(this, &ModalOverlay::renderHost, Qt::QueuedConnection);
    m_focus.restore();
}

// A dock may be back in a main window, behind another dock in the same tab area.
void ModalOverlay::absenceLasted() {
    if (window() != parentWidget() && window()->isVisible())
        windowReturned();
    else
        windowGone();
}

// Input

// The base class would repaint the whole overlay.
void ModalOverlay::focusInEvent(QFocusEvent *) {}
void ModalOverlay::focusOutEvent(QFocusEvent *) {}

bool ModalOverlay::event(QEvent *event) {
    const bool handled = QWidget::event(event);
    // A style sheet with a transparent background clears the attribute.
    if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange)
        setAttribute(Qt::WA_OpaquePaintEvent, !m_picture.isNull());
    if (!isInput(event->type()))
        return handled;
    event->accept();
    return true;
}

void ModalOverlay::keyPressEvent(QKeyEvent *event) {
    keyPressed(*event);
}

// Accepting the enter event keeps a drag from the host. The move event then refuses the drop.
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

// The window

// Filters the window and the overlay's siblings. A sibling can rise above the overlay, for example
// the scroll bars of a window that is a scroll area, on each layout.
bool ModalOverlay::eventFilter(QObject *watched, QEvent *event) {
    if (watched == parent())
        return filterWindowEvent(event);
    if (event->type() == QEvent::ZOrderChange)
        raise();
    return QWidget::eventFilter(watched, event);
}

bool ModalOverlay::filterWindowEvent(QEvent *event) {
    switch (event->type()) {
    case QEvent::Resize:
        setGeometry(parentWidget()->rect());
        return false;
    // The safe area has changed, for example by a rotation. Qt includes it in a widget's margins.
    case QEvent::ContentsRectChange:
        layOut();
        return false;
    case QEvent::WindowStateChange:
        visibilityChanged();
        return false;
    case QEvent::ChildAdded:
        return filterChildAdded(static_cast<QChildEvent *>(event)->child());
    // Gestures that the host grabs for its window also start on the overlay.
    case QEvent::Gesture:
    case QEvent::GestureOverride:
        return true;
    default:
        return false;
    }
}

bool ModalOverlay::filterChildAdded(QObject *child) {
    // The host must not receive this event. A splitter would turn the overlay into a pane.
    if (child == this)
        return true;
    if (child->isWidgetType()) {
        child->installEventFilter(this);
        raise();
    }
    return false;
}

// Rendering the host here would deliver this event again.
void ModalOverlay::resizeEvent(QResizeEvent *) {
    const bool isNative = testAttribute(Qt::WA_NativeWindow);
    if (!isNative && !isPictureCurrent())
        thaw();
    layOut();
    if ((isNative || isHostTranslucent()) && !std::exchange(m_isRenderingScheduled, true))
        QMetaObject::invokeMethod(this, &ModalOverlay::renderHost, Qt::QueuedConnection);
}

void ModalOverlay::renderHost() {
    m_isRenderingScheduled = false;
    if (!isPictureCurrent())
        thaw();
    followShape();
}

// The picture

bool ModalOverlay::isHostTranslucent() const {
    return window()->testAttribute(Qt::WA_TranslucentBackground);
}

bool ModalOverlay::isPictureCurrent() const {
    return m_picture.isNull() || m_picture.deviceIndependentSize().toSize() == size();
}

// The picture looks the same as the host on screen.
void ModalOverlay::freeze() {
    m_picture = pictureBehind(this, m_embeddedPictures);
    setAttribute(Qt::WA_OpaquePaintEvent);
    followShape();
    update();
}

void ModalOverlay::thaw() {
    if (testAttribute(Qt::WA_NativeWindow)) {
        m_picture = pictureBehind(this, m_embeddedPictures);
    } else {
        m_picture = {};
        setAttribute(Qt::WA_OpaquePaintEvent, false);
    }
    // The host has to repaint completely. Strips spread the cost over several frames.
    animate(this, AnimationTiming::easing(thawDuration), [this, top = 0](qreal way) mutable {
        const int bottom = qRound(height() * way);
        update(0, top, width(), bottom - top);
        top = bottom;
    });
}

void ModalOverlay::followShape() {
    if (!isHostTranslucent())
        return;
    if (!m_shape)
        m_shape = new HostShape(this);
    m_shape->show();
    m_shape->follow(m_picture.isNull() ? pictureBehind(this, {}) : m_picture);
}

void ModalOverlay::paintEvent(QPaintEvent *) {
    if (m_picture.isNull())
        return;
    QPainter painter(this);
    // The picture replaces the previous content, also where it is transparent.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    // Parts of the picture would not start at whole pixels at every device pixel ratio.
    painter.drawPixmap(QPoint(), m_picture);
}

} // namespace KestrioKit
