#include "KestrioKit/Widgets/Overlay/FocusKeeper.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <QApplication>
#include <QEvent>

#include <utility>

namespace KestrioKit {

namespace {

bool isKeyboardInput(QEvent::Type type) {
    return type == QEvent::KeyPress || type == QEvent::KeyRelease ||
           type == QEvent::ShortcutOverride || type == QEvent::InputMethod;
}

} // namespace

void FocusKeeper::begin() {
    qApp->disconnect(this);
    m_before = m_view->window()->focusWidget();
    connect(qApp, &QApplication::focusChanged, this, &FocusKeeper::focusChanged);
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &FocusKeeper::focusWindowChanged);
    watch(m_before ? m_before.data() : m_view->window());
    focusWindowChanged(QGuiApplication::focusWindow());
}

void FocusKeeper::end() {
    qApp->disconnect(this);
    watch(nullptr);
    QWidget *const focus = m_view->window()->focusWidget();
    if (!isInside(focus))
        return;
    if (m_windowBefore)
        m_windowBefore->requestActivate();
    if (m_before)
        m_before->setFocus(Qt::OtherFocusReason);
    else
        focus->clearFocus();
}

void FocusKeeper::restore() {
    if (m_inside)
        target()->setFocus(Qt::OtherFocusReason);
}

bool FocusKeeper::isInside(const QWidget *view) const {
    return view && (view == m_view || m_view->isAncestorOf(view));
}

bool FocusKeeper::isEmbedded(const QWindow *window) const {
    const QWindow *const host = m_view->window()->windowHandle();
    return window && host && window != m_view->windowHandle() &&
           host->isAncestorOf(window, QWindow::ExcludeTransients);
}

QWidget *FocusKeeper::target() const {
    return m_inside && m_inside->isVisible() ? m_inside.data() : m_view;
}

// The widget that the host focuses meanwhile receives the focus when the view is gone. If focus
// changes are nested, the outer ones are reported last and are outdated by then.
void FocusKeeper::focusChanged(QWidget *old, QWidget *now) {
    if (now != QApplication::focusWidget())
        return;
    if (isInside(now)) {
        watch(nullptr);
        m_inside = now;
        // The visitor moves the focus within the view. The host moves it from outside.
        if (isInside(old))
            m_returns = 0;
        Q_EMIT moved(now);
        return;
    }
    if (now ? now->window() != m_view->window() : !m_view->isActiveWindow())
        return;
    if (now) {
        m_before = now;
        m_windowBefore = nullptr;
    }
    // The window itself receives the keys when no widget has the focus.
    watch(now ? now : m_view->window());
    scheduleReturn();
}

// An embedded native window receives the keys instead of all widgets.
void FocusKeeper::focusWindowChanged(QWindow *now) {
    if (!isEmbedded(now))
        return;
    m_windowBefore = now;
    watch(now);
    scheduleReturn();
}

void FocusKeeper::watch(QObject *intruder) {
    if (m_intruder)
        m_intruder->removeEventFilter(this);
    m_intruder = intruder;
    if (m_intruder)
        m_intruder->installEventFilter(this);
}

// After too many returns a persistent host keeps the focus, but still receives no keys. The call is
// queued because the code that moves the focus may not be finished, and may move it again.
void FocusKeeper::scheduleReturn() {
    if (!m_inside || m_isReturnScheduled || m_returns >= screenMetrics.mostFocusReturns)
        return;
    m_isReturnScheduled = true;
    QMetaObject::invokeMethod(this, &FocusKeeper::returnFocus, Qt::QueuedConnection);
}

void FocusKeeper::returnFocus() {
    m_isReturnScheduled = false;
    if (!m_intruder)
        return;
    ++m_returns;
    if (isEmbedded(QGuiApplication::focusWindow()))
        m_view->window()->activateWindow();
    target()->setFocus(Qt::OtherFocusReason);
}

bool FocusKeeper::eventFilter(QObject *watched, QEvent *event) {
    if (watched != m_intruder || !isKeyboardInput(event->type()))
        return QObject::eventFilter(watched, event);
    QCoreApplication::sendEvent(target(), event);
    event->accept();
    return true;
}

} // namespace KestrioKit
