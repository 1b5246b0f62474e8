#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"

#include <QAbstractButton>
#include <QList>
#include <QObject>
#include <QPointer>

namespace KestrioKit {

/// Lets a double-click, or two quick presses of a key, click a button once: after a click the same
/// button takes no press until the platform's double-click interval has passed. Other buttons do.
class DoublePressFilter final : public QObject {
    Q_OBJECT

public:
    /// `clock` must outlive this object, which `parent` owns.
    DoublePressFilter(const QList<QAbstractButton *> &buttons, const Clock &clock, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isSecondPress(const QObject *button, const QEvent &event) const;

    const Clock &m_clock;
    QPointer<QObject> m_pressed;
    DispatchTime m_pressedAt;
    bool m_hasClicked = false;
};

} // namespace KestrioKit
