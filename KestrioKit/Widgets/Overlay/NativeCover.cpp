#include "KestrioKit/Widgets/Overlay/NativeCover.h"

#include <QCoreApplication>
#include <QEvent>

namespace KestrioKit {

QList<QWindow *> NativeCover::windowsBeside(const QWidget *view) {
    const QWindow *const host = view->window()->windowHandle();
    QList<QWindow *> windows =
        host ? host->findChildren<QWindow *>(Qt::FindDirectChildrenOnly) : QList<QWindow *>();
    windows.removeOne(view->windowHandle());
    windows.removeIf([](const QWindow *window) { return window->isTopLevel(); });
    return windows;
}

void NativeCover::begin() {
    end();
    m_window = m_view->window()->windowHandle();
    if (m_window)
        m_window->installEventFilter(this);
    if (!windowsBeside(m_view).isEmpty())
        makeNative();
}

void NativeCover::end() {
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = nullptr;
}

// The check is queued because the child is still being created or placed.
bool NativeCover::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ChildAdded && !m_isCheckScheduled) {
        m_isCheckScheduled = true;
        QMetaObject::invokeMethod(this, &NativeCover::check, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void NativeCover::check() {
    m_isCheckScheduled = false;
    if (!m_window || windowsBeside(m_view).isEmpty())
        return;
    makeNative();
    m_view->raise();
    Q_EMIT raised();
}

// Without the attribute, Qt would also make the host's sibling widgets native permanently.
void NativeCover::makeNative() {
    constexpr auto attribute = Qt::AA_DontCreateNativeWidgetSiblings;
    const bool before = QCoreApplication::testAttribute(attribute);
    QCoreApplication::setAttribute(attribute);
    m_view->setAttribute(Qt::WA_NativeWindow);
    QCoreApplication::setAttribute(attribute, before);
}

} // namespace KestrioKit
