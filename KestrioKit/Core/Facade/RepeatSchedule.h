#pragma once

#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Queue/Reachability.h"

#include <functional>
#include <memory>

namespace KestrioKit {

/// Seconds to wait after that many failed start-ups before the next one: 5, 10, 30 and 60, then 60
/// each time.
double startUpRepeatDelay(int failures);

/// Says when a start-up that has failed is to be repeated. Thread-safe.
///
/// Between `begin()` and `end()` it watches the network; at other times it costs nothing.
class RepeatSchedule final : public std::enable_shared_from_this<RepeatSchedule> {
public:
    enum class Occasion { delayIsOver, networkIsBack };
    using Repeat = std::function<void(Occasion occasion)>;

    /// `repeat` is called on the library's thread, until `end()` and perhaps once just after it.
    RepeatSchedule(const LibraryContext &context, Repeat repeat);
    Q_DISABLE_COPY_MOVE(RepeatSchedule)

    /// Calls `repeat` each time the way to `host` is there again, from now on.
    void begin(const QString &host);
    /// Calls `repeat` once after so many seconds, instead of what it was to wait for.
    void wait(double seconds);
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
    // Used on the queue alone.
    std::shared_ptr<DispatchWorkItem> m_scheduled;
    std::shared_ptr<Reachability> m_reachability;
    bool m_networkIsAway = false;
};

} // namespace KestrioKit
