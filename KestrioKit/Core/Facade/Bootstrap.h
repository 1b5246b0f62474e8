#pragma once

#include "KestrioKit/Core/Facade/HeldCall.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <QList>

#include <memory>
#include <optional>

namespace KestrioKit {

/// Keeps the progress of start-up and the calls that were made too early. Thread-safe.
class Bootstrap : public std::enable_shared_from_this<Bootstrap> {
public:
    /// The steps of start-up, ordered by their raw values. Any step forward leaves `error`.
    enum class Sequence : int {
        /// The service has refused the configuration, or a request for a visitor has failed.
        error = -1,
        start = 0,
        /// The configuration has been requested.
        configured = 1,
        /// The configuration has been received.
        getConfig = 2,
        /// There is an anonymous visitor.
        visitorId = 3,
        /// There is a visitor with a user attached.
        userId = 4,
    };

    /// What to do with a call that the host makes now: run it, hold it or drop it.
    enum class Action { doit, queue, skip };

    explicit Bootstrap(Executor &executor);

    Sequence sequence() const { return m_state.value().sequence; }

    /// Returns what to do with a call at the current step.
    Action action() const;
    /// Like `action()`. Before `configure()`, each call also logs that it is missing.
    Action readyState() const;
    /// Returns whether start-up has begun and has not ended in `error`.
    bool isConfigured() const;

    /// Returns the last user that the host has set during start-up, if any.
    std::optional<QString> userId() const { return m_state.value().userId; }
    /// Keeps the user if start-up is under way. Otherwise returns false and keeps nothing.
    bool setUserId(const QString &userId);
    /// Replaces the kept user at any step; absent removes it.
    void replaceUserId(const std::optional<QString> &userId);

    /// Moves forward to `next`, or from any step to `error`. Ignores other steps back. Returns
    /// whether the step has changed.
    bool step(Sequence next);
    /// Goes to `configured` from any step.
    void startOver();
    /// Goes back to `start`, without a user, and drops all held calls.
    void reset();

    /// Holds a call. If the held calls have just been released, the call runs after them.
    void enqueue(HeldCall call);
    /// Runs all held calls on the main queue, in the order in which they were made.
    void flush();
    /// Like `flush()`, but remembers the release without logging it if no calls are held.
    void flushHeld();
    /// Ends the release of held calls: calls are held again, including those that arrive late.
    void holdAgain();
    /// Queues the records of the calls held before the next `logout()`, and keeps the other calls.
    void recordHeld();
    /// Like `recordHeld()`, but before this function returns.
    void recordHeldNow();
    /// Returns whether `recordHeld()` would queue any records.
    bool holdsRecords();
    /// Drops all held calls, and tells the host about each that has a `dropped` block.
    void dropHeld();

    /// The maximum number of held events and attribute changes. Beyond it the oldest is dropped,
    /// events first.
    static constexpr qsizetype recordLimit = 1000;

private:
    /// The step and the user are one value. A user set at the last moment is therefore either seen
    /// after `step()` or refused.
    struct State {
        Sequence sequence = Sequence::start;
        std::optional<QString> userId;
    };

    void release();
    void dropSurplus();
    /// Returns how many held calls come before the next `logout()`.
    qsizetype callsOfThisVisitor() const;
    void record();

    DispatchQueue m_dQueue;
    Atomic<State> m_state;
    // Used only on `m_dQueue`.
    QList<HeldCall> m_callQueue;
    bool m_isReleased = false;
};

QString printedForm(Bootstrap::Sequence sequence);
QString printedForm(Bootstrap::Action action);

} // namespace KestrioKit
