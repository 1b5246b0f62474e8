#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"

#include <QAbstractButton>
#include <QList>
#include <QObject>
#include <QPointer>

namespace KestrioKit {

/// Makes a double-click, or two quick presses of a key, click a button only once. After a click,
/// the same button ignores presses until the platform's double-click interval has passed since the
/// press. Other buttons are not affected. Use it on the main thread only.
class DoublePressFilter final : public QObject {
    Q_OBJECT

public:
    /// `parent` owns this object. `clock` must outlive it.
    DoublePressFilter(const QList<QAbstractButton *> &buttons, const Clock &clock, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isSecondPress(const QObject *button, const QEvent &event) const;

    const Clock &m_clock;
    /// The button that was pressed last, and when.
    QPointer<QObject> m_pressed;
    DispatchTime m_pressedAt;
    /// Whether that press has clicked the button.
    bool m_hasClicked = false;
};

} // namespace KestrioKit
