#pragma once

#include "KestrioKit/Core/Facade/HeldCall.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <QList>

#include <memory>
#include <optional>

namespace KestrioKit {

/// How far start-up has come, and the calls that were made too early. Thread-safe.
class Bootstrap : public std::enable_shared_from_this<Bootstrap> {
public:
    /// The order is the raw values'; any step forward leaves `error`.
    enum class Sequence : int {
        /// A configuration has been refused, or a visitor could not be had.
        error = -1,
        start = 0,
        /// The configuration has been asked for.
        configured = 1,
        /// The configuration has come.
        getConfig = 2,
        /// There is an anonymous visitor.
        visitorId = 3,
        /// There is a visitor with a user attached.
        userId = 4,
    };

    /// What is to be done with a call that the host makes now.
    enum class Action { doit, queue, skip };

    explicit Bootstrap(Executor &executor);

    Sequence sequence() const { return m_state.value().sequence; }

    Action action() const;
    /// The same. Before `configure`, each call logs that it is missing.
    Action readyState() const;
    bool isConfigured() const;

    /// The user given while start-up was under way; the last one counts.
    std::optional<QString> userId() const { return m_state.value().userId; }
    /// False, and nothing is kept, when start-up is not under way (any more).
    bool setUserId(const QString &userId);
    /// The same wherever start-up is; absent for none.
    void replaceUserId(const std::optional<QString> &userId);

    /// Moves forward to `next`, or to `error` from anywhere. Steps back are ignored. Returns
    /// whether it has moved.
    bool step(Sequence next);
    /// Begins again at `configured`, wherever it was.
    void startOver();
    /// Goes back to `start`, without a user, and drops all held calls.
    void reset();

    /// Holds a call. One that comes when they have just been released follows them.
    void enqueue(HeldCall call);
    /// Hands all held calls to the main queue, in the order in which they came.
    void flush();
    /// The same, when there are any.
    void flushHeld();
    /// Holds calls again, also those that come late.
    void holdAgain();
    /// Queues the records of the held calls before the next `logout()`, and keeps the other calls.
    void recordHeld();
    /// The same within this call.
    void recordHeldNow();
    /// Whether that would queue any.
    bool holdsRecords();
    /// Drops all held calls.
    void dropHeld();

    /// The most events and changes of attributes that are held; beyond it the oldest are dropped,
    /// events first.
    static constexpr qsizetype recordLimit = 1000;

private:
    /// One value, so that a user given at the last moment is either seen after `step()` or refused.
    struct State {
        Sequence sequence = Sequence::start;
        std::optional<QString> userId;
    };

    void release();
    void dropSurplus();
    /// How many of the held calls come before the next `logout()`.
    qsizetype callsOfThisVisitor() const;
    void record();

    DispatchQueue m_dQueue;
    Atomic<State> m_state;
    // Touched on `m_dQueue` alone.
    QList<HeldCall> m_callQueue;
    bool m_isReleased = false;
};

QString printedForm(Bootstrap::Sequence sequence);
QString printedForm(Bootstrap::Action action);

} // namespace KestrioKit
