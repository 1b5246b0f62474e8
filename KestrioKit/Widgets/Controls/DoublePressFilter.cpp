#include "KestrioKit/Widgets/Controls/DoublePressFilter.h"

namespace KestrioKit {

DoublePressFilter::DoublePressFilter(const QList<QAbstractButton *> &buttons, const Clock &clock,
                                     QObject *parent)
    : QObject(parent), m_presses(clock) {
    for (QAbstractButton *const button : buttons) {
        button->installEventFilter(this);
        connect(button, &QAbstractButton::clicked, this, [this] { m_presses.clicked(); });
    }
}

bool DoublePressFilter::eventFilter(QObject *watched, QEvent *event) {
    return m_presses.refuses(watched, *event);
}

} // namespace KestrioKit
