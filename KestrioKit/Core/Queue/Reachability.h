#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Queue/ReachabilityError.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace KestrioKit {

/// Watches whether the network is reachable and reports changes.
///
///     monitor->setWhenReachable([](Reachability &) { resume(); });
///     monitor->startNotifier();
///
/// The first reading of the flags counts as a change, so a new monitor calls back right after its
/// start. Thread-safe, except that only one thread at a time may start or stop the monitor. The
/// monitor may be released at any place, including its own callbacks.
class Reachability final : public QObject, public std::enable_shared_from_this<Reachability> {
    Q_OBJECT

public:
    /// The kind of connection. Zero is reserved.
    enum class Connection { unavailable = 1, wifi, cellular };
    using Callback = std::function<void(Reachability &)>;
    using Creation = std::variant<std::shared_ptr<Reachability>, ReachabilityError>;

    /// Returns a stopped monitor of `reachabilityRef`, or an error if `reachabilityRef` holds one.
    /// Flags are read on `executor`. Callbacks and the signal come on a copy of
    /// `notificationQueue`. If it is null, they come on the thread that detects the change, where
    /// they must not start the notifier.
    static Creation create(const ReachabilityFlagsSource::Creation &reachabilityRef,
                           Executor &executor, const DispatchQueue *notificationQueue);
    ~Reachability() override;

    /// Called when the flags have changed and the network is reachable. Default: empty.
    void setWhenReachable(Callback callback) { m_whenReachable.setValue(std::move(callback)); }
    /// Called when the flags have changed and the network is unreachable. Default: empty.
    void setWhenUnreachable(Callback callback) { m_whenUnreachable.setValue(std::move(callback)); }

    /// Kept for compatibility and without effect. Default: true.
    bool reachableOnWWAN() const { return m_reachableOnWWAN; }
    void setReachableOnWWAN(bool reachable) { m_reachableOnWWAN = reachable; }
    /// If false, a cellular connection counts as `unavailable`. Default: true.
    bool allowsCellularConnection() const { return m_allowsCellularConnection; }
    void setAllowsCellularConnection(bool allows) { m_allowsCellularConnection = allows; }
    /// Kept for compatibility and without effect.
    static constexpr bool isRunningOnDevice = true;

    /// Starts watching. Does nothing if the monitor is already running. On error it stays stopped.
    [[nodiscard]] std::optional<ReachabilityError> startNotifier();
    /// Stops watching. A callback that is already queued may still come.
    void stopNotifier();
    bool notifierRunning() const { return m_notifierRunning; }

    /// Returns the flags read last, or nothing before the first reading.
    std::optional<ReachabilityFlags> flags() const { return m_flags.value(); }
    /// Returns the kind of connection according to the last flags. Reads the flags first if there
    /// are none.
    Connection connection();
    /// Returns the flags with one character each, "-" for an unset flag: "-R -------".
    QString description() const;

Q_SIGNALS:
    /// Emitted after the callback when the flags have changed.
    void reachabilityChanged();

private:
    Reachability(std::shared_ptr<ReachabilityFlagsSource> reachabilityRef, Executor &executor,
                 const DispatchQueue *notificationQueue);

    /// Reads the flags on the serial queue and waits for the result. Stops the monitor on error.
    std::optional<ReachabilityError> setReachabilityFlags();
    void setFlags(ReachabilityFlags flags);
    /// Notifies on the notification queue, or immediately if there is none.
    void announceChange();
    void notify();

    Atomic<Callback> m_whenReachable;
    Atomic<Callback> m_whenUnreachable;
    std::atomic<bool> m_reachableOnWWAN = true;
    std::atomic<bool> m_allowsCellularConnection = true;
    std::atomic<bool> m_notifierRunning = false;
    const std::shared_ptr<ReachabilityFlagsSource> m_reachabilityRef;
    const DispatchQueue m_reachabilitySerialQueue;
    const std::optional<DispatchQueue> m_notificationQueue;
    Atomic<std::optional<ReachabilityFlags>> m_flags;
};

} // namespace KestrioKit
