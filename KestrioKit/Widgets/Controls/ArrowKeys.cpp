#include "KestrioKit/Widgets/Controls/ArrowKeys.h"

#include "KestrioKit/Core/Session/ArrowKeyTarget.h"

#include <QKeyEvent>
#include <QWidget>

namespace KestrioKit {

ArrowKeys::ArrowKeys(QList<QWidget *> controls, TabStops tabStops, QObject *parent)
    : QObject(parent), m_controls(std::move(controls)), m_tabStops(tabStops) {
    for (QWidget *const control : m_controls)
        control->installEventFilter(this);
    if (!m_controls.isEmpty())
        makeTabStop(m_controls.first());
}

void ArrowKeys::makeTabStop(const QObject *control) {
    if (m_tabStops == TabStops::each)
        return;
    for (QWidget *const known : m_controls)
        known->setFocusPolicy(known == control ? Qt::StrongFocus : Qt::ClickFocus);
}

bool ArrowKeys::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusIn)
        makeTabStop(watched);
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    return moveFocus(qobject_cast<QWidget *>(watched), static_cast<QKeyEvent *>(event)->key());
}

bool ArrowKeys::moveFocus(const QWidget *from, int key) {
    const qsizetype position = m_controls.indexOf(from);
    const qsizetype target = arrowKeyTarget(key, position, m_controls.size(),
                                            from->layoutDirection() == Qt::RightToLeft);
    if (target == position)
        return false;
    m_controls[target]->setFocus(Qt::TabFocusReason);
    return true;
}

} // namespace KestrioKit
