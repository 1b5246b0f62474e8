#pragma once

#include <QBasicTimer>
#include <QDeadlineTimer>
#include <QObject>

#include <chrono>
#include <functional>

/// Asks from the event loop, again and again, whether something is so, until it is or the time is
/// over. Deletes itself then.
class ConditionWait final : public QObject {
public:
    /// Tells, now or later on the same thread, whether the condition holds.
    using Answer = std::function<void(bool holds)>;
    using Condition = std::function<void(const Answer &answer)>;

    /// Calls `finished` from the event loop: whether the condition held within `limit`. At least
    /// one answer is waited for, unless it takes longer than that.
    static void start(Condition condition, std::chrono::milliseconds limit, Answer finished);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    ConditionWait(Condition condition, std::chrono::milliseconds limit, Answer finished);

    void answered(bool holds);
    void finish(bool holds);

    Condition m_condition;
    QDeadlineTimer m_deadline;
    Answer m_finished;
    QBasicTimer m_timer;
    bool m_isAsking = false;
};
