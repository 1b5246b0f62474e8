#include "KestrioKit/Quick/Overlay/FocusKeeper.h"

#include <utility>

namespace KestrioKit::Quick {

namespace {

/// After so many returns a persistent host keeps the focus until a key is pressed.
constexpr int mostReturns = 5;

} // namespace

void FocusKeeper::begin(QQuickWindow *window, bool returns) {
    m_isReturning = returns;
    if (m_window)
        m_window->disconnect(this);
    m_window = window;
    m_before = window->activeFocusItem();
    connect(window, &QQuickWindow::activeFocusItemChanged, this, &FocusKeeper::focusChanged);
}

void FocusKeeper::end() {
    if (!m_window)
        return;
    m_window->disconnect(this);
    const bool wasInside = isInside();
    m_view->setFocus(false);
    if (wasInside && m_before)
        m_before->forceActiveFocus(Qt::OtherFocusReason);
}

void FocusKeeper::restore() {
    QQuickItem *const target =
        m_inside && m_inside->isVisible() && m_inside->isEnabled() ? m_inside.data() : m_view;
    target->forceActiveFocus(Qt::OtherFocusReason);
}

bool FocusKeeper::contains(const QQuickItem *item) const {
    return item && (item == m_view || m_view->isAncestorOf(item));
}

bool FocusKeeper::isInside() const {
    return m_window && contains(m_window->activeFocusItem());
}

// The chain of the whole window also leads through the host's items.
void FocusKeeper::moveToNext(bool forward) {
    QQuickItem *const start = isInside() ? m_window->activeFocusItem() : m_view;
    QQuickItem *item = start;
    do {
        item = item->nextItemInFocusChain(forward);
    } while (item != start && !(contains(item) && item != m_view && item->activeFocusOnTab()));
    if (item != start)
        item->forceActiveFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

// The item that the host focuses meanwhile receives the focus when the survey is gone.
void FocusKeeper::focusChanged() {
    QQuickItem *const now = m_window->activeFocusItem();
    const bool wasInside = std::exchange(m_wasInside, contains(now));
    if (m_wasInside) {
        // The visitor moves the focus within the survey. The host moves it from outside.
        if (wasInside)
            m_returns = 0;
        m_inside = now;
        Q_EMIT moved(now);
        return;
    }
    if (now && now != m_window->contentItem())
        m_before = now;
    // The call is queued because the code that moves the focus may move it again.
    const bool returns = m_isReturning && now && m_inside && m_returns < mostReturns;
    if (returns && !std::exchange(m_isReturnScheduled, true))
        QMetaObject::invokeMethod(this, &FocusKeeper::returnFocus, Qt::QueuedConnection);
}

void FocusKeeper::returnFocus() {
    m_isReturnScheduled = false;
    if (!m_window || isInside())
        return;
    ++m_returns;
    restore();
}

} // namespace KestrioKit::Quick
