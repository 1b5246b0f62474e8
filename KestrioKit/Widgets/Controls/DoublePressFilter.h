#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Core/Session/DoublePress.h"

#include <QAbstractButton>
#include <QList>
#include <QObject>

namespace KestrioKit {

/// Makes buttons ignore the presses that `DoublePress` refuses. Use it on the main thread only.
class DoublePressFilter final : public QObject {
    Q_OBJECT

public:
    /// `parent` owns this object. `clock` must outlive it.
    DoublePressFilter(const QList<QAbstractButton *> &buttons, const Clock &clock, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    DoublePress m_presses;
};

} // namespace KestrioKit
