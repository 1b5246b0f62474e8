#include "KestrioKit/Widgets/Controls/DoublePressFilter.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QStyleHints>

namespace KestrioKit {

namespace {

// These are the keys that click a `Button`.
bool isPress(int key) {
    return key == Qt::Key_Space || key == Qt::Key_Select || key == Qt::Key_Return ||
           key == Qt::Key_Enter;
}

bool isPress(const QEvent &event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return true;
    case QEvent::KeyPress:
        return isPress(static_cast<const QKeyEvent &>(event).key());
    default:
        return false;
    }
}

} // namespace

DoublePressFilter::DoublePressFilter(const QList<QAbstractButton *> &buttons, const Clock &clock,
                                     QObject *parent)
    : QObject(parent), m_clock(clock) {
    for (QAbstractButton *const button : buttons) {
        button->installEventFilter(this);
        connect(button, &QAbstractButton::clicked, this, [this] { m_hasClicked = true; });
    }
}

bool DoublePressFilter::isSecondPress(const QObject *button, const QEvent &event) const {
    if (!m_hasClicked || button != m_pressed)
        return false;
    const std::chrono::milliseconds interval(
        QGuiApplication::styleHints()->mouseDoubleClickInterval());
    // The platform recognizes a double-click correctly even if its events are delivered late.
    return event.type() == QEvent::MouseButtonDblClick ||
           m_clock.now().sinceReference < m_pressedAt.sinceReference + interval;
}

bool DoublePressFilter::eventFilter(QObject *watched, QEvent *event) {
    if (!isPress(*event))
        return false;
    if (isSecondPress(watched, *event))
        return true;
    m_pressed = watched;
    m_pressedAt = m_clock.now();
    m_hasClicked = false;
    return false;
}

} // namespace KestrioKit
