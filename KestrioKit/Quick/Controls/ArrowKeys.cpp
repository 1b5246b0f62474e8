#include "KestrioKit/Quick/Controls/ArrowKeys.h"

#include "KestrioKit/Core/Session/ArrowKeyTarget.h"

#include <algorithm>

namespace KestrioKit::Quick {

namespace {

void collectButtons(const QQuickItem &item, QList<ButtonItem *> &buttons) {
    for (QQuickItem *const child : item.childItems()) {
        if (auto *const button = qobject_cast<ButtonItem *>(child))
            buttons.append(button);
        else
            collectButtons(*child, buttons);
    }
}

} // namespace

void ArrowKeys::setContainer(QQuickItem *container) {
    m_container = container;
    connect(container, &QQuickItem::childrenChanged, this, &ArrowKeys::collect);
    collect();
}

void ArrowKeys::collect() {
    m_buttons.clear();
    collectButtons(*m_container, m_buttons);
    for (ButtonItem *const button : m_buttons)
        button->installEventFilter(this);
    if (!m_buttons.isEmpty())
        makeTabStop(m_buttons.first());
    Q_EMIT firstChanged();
}

void ArrowKeys::makeTabStop(const QObject *button) {
    if (!m_isExclusive)
        return;
    for (ButtonItem *const known : m_buttons)
        known->setActiveFocusOnTab(known == button);
}

void ArrowKeys::focusFirst() const {
    const auto enabled = std::ranges::find_if(m_buttons, &QQuickItem::isEnabled);
    if (enabled != m_buttons.end())
        (*enabled)->forceActiveFocus(Qt::PopupFocusReason);
}

bool ArrowKeys::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusIn)
        makeTabStop(watched);
    if (event->type() != QEvent::KeyPress)
        return false;
    return moveFocus(qobject_cast<QQuickItem *>(watched), static_cast<QKeyEvent *>(event)->key());
}

bool ArrowKeys::moveFocus(const QQuickItem *from, int key) {
    QList<ButtonItem *> buttons = m_buttons;
    buttons.removeIf([](const ButtonItem *button) { return !button->isEnabled(); });
    const qsizetype position = buttons.indexOf(from);
    const qsizetype target = arrowKeyTarget(key, position, buttons.size(), m_isMirrored);
    if (target == position)
        return false;
    buttons[target]->forceActiveFocus(Qt::TabFocusReason);
    return true;
}

} // namespace KestrioKit::Quick
