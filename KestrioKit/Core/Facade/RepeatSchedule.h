#pragma once

#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Queue/Reachability.h"

#include <functional>
#include <memory>

namespace KestrioKit {

/// Returns the delay in seconds before the next start-up, after the given number of failures: 5,
/// 10, 30 and 60, then always 60.
double startUpRepeatDelay(int failures);

/// Decides when a failed start-up is retried. Thread-safe.
///
/// It watches the network between `begin()` and `end()`, and uses no resources at other times.
class RepeatSchedule final : public std::enable_shared_from_this<RepeatSchedule> {
public:
    enum class Occasion { delayIsOver, networkIsBack };
    using Repeat = std::function<void(Occasion occasion)>;

    /// `repeat` is called on the library's thread until `end()`, and possibly once shortly after
    /// it.
    RepeatSchedule(const LibraryContext &context, Repeat repeat);
    Q_DISABLE_COPY_MOVE(RepeatSchedule)

    /// Starts to watch the network. Calls `repeat` each time `host` becomes reachable again.
    void begin(const QString &host);
    /// Calls `repeat` once after the given number of seconds. Replaces an earlier wait.
    void wait(double seconds);
    /// Stops watching the network, and cancels the wait.
    void end();

private:
    void watchNetwork(const QString &host);
    void schedule(DispatchTime time);
    void cancel();

    const Clock &m_clock;
    Executor &m_executor;
    const ReachabilityFlagsSourceFactory m_makeFlagsSource;
    const Repeat m_repeat;
    const DispatchQueue m_queue;
    // Used only on `m_queue`.
    std::shared_ptr<DispatchWorkItem> m_scheduled;
    std::shared_ptr<Reachability> m_reachability;
    bool m_networkIsAway = false;
};

} // namespace KestrioKit
