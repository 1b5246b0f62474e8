#pragma once

#include "KestrioKit/Platform/Atomic.h"
#include "KestrioKit/Platform/DispatchQueue.h"

#include <QList>

#include <functional>
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

    /// `attachUser` is called with the pending user as soon as there is a visitor.
    Bootstrap(Executor &executor, std::function<void(const QString &userId)> attachUser);

    Sequence sequence() const { return m_state.value().sequence; }

    /// Before `configure`, each call logs that it is missing.
    Action readyState() const;
    bool isConfigured() const;

    /// The user given while start-up was under way; the last one counts. Never cleared.
    std::optional<QString> userId() const { return m_state.value().userId; }
    /// False, and nothing is kept, when start-up is not under way (any more).
    bool setUserId(const QString &userId);

    /// Moves forward to `next`, or to `error` from anywhere, and releases the held calls when it
    /// arrives at a visitor: a pending user is attached first, and its answer releases them. Steps
    /// back are ignored.
    void step(Sequence next);

    /// Holds a call. One that comes when they have just been released follows them.
    void enqueue(Block call);
    /// Hands all held calls to the main queue, in the order in which they came.
    void flush();

private:
    /// One value, so that a user given at the last moment is either seen by `step()` or refused.
    struct State {
        Sequence sequence = Sequence::start;
        std::optional<QString> userId;
    };

    void release();

    DispatchQueue m_dQueue;
    Atomic<State> m_state;
    // Touched on `m_dQueue` alone.
    QList<Block> m_callQueue;
    bool m_isReleased = false;
    std::function<void(const QString &userId)> m_attachUser;
};

QString printedForm(Bootstrap::Sequence sequence);
QString printedForm(Bootstrap::Action action);

} // namespace KestrioKit
