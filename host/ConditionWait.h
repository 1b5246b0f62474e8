#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

/// Checks a condition repeatedly from the event loop until it holds or the time limit expires. The
/// object deletes itself afterwards.
class ConditionWait final : public QObject {
public:
    /// Receives the result of a check. It may be called immediately or later, on the same thread.
    using Answer = std::function<void(bool holds)>;
    /// Starts a check and passes the result to `answer`.
    using Condition = std::function<void(const Answer &answer)>;

    /// Starts waiting. Calls `finished` once from the event loop; `holds` tells whether the
    /// condition held within `limit`. The condition is checked at least once. A check that is still
    /// running when the limit expires counts as failed.
    static void start(Condition condition, std::chrono::milliseconds limit, Answer finished);

private:
    ConditionWait(Condition condition, std::chrono::milliseconds limit, Answer finished);

    void check();
    void answered(bool holds);
    void finish(bool holds);

    Condition m_condition;
    QDeadlineTimer m_deadline;
    Answer m_finished;
    QTimer m_timer;
    bool m_isAsking = false;
};
