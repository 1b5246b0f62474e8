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

/// Watches whether the network can be reached, and tells when that changes.
///
///     monitor->setWhenReachable([](Reachability &) { resume(); });
///     monitor->startNotifier();
///
/// The first callback comes right after the start. Thread-safe, but starting and stopping belong
/// into one hand. The monitor may be dropped anywhere, in its own callbacks too.
class Reachability final : public QObject, public std::enable_shared_from_this<Reachability> {
    Q_OBJECT

public:
    /// How the network is reached. Zero is reserved.
    enum class Connection { unavailable = 1, wifi, cellular };
    using Callback = std::function<void(Reachability &)>;
    using Creation = std::variant<std::shared_ptr<Reachability>, ReachabilityError>;

    /// A stopped monitor of `reachabilityRef`, or the error when that could not be had. Flags are
    /// read on `executor`. Callbacks and the signal come on (a copy of) `notificationQueue`; with
    /// nullptr, on the thread that saw the change, where they must not start the notifier.
    static Creation create(const ReachabilityFlagsSource::Creation &reachabilityRef,
                           Executor &executor, const DispatchQueue *notificationQueue);
    ~Reachability() override;

    /// Is called when the connection has become anything but `unavailable`. Empty at first.
    void setWhenReachable(Callback callback) { m_whenReachable.setValue(std::move(callback)); }
    /// Is called when the connection has become `unavailable`. Empty at first.
    void setWhenUnreachable(Callback callback) { m_whenUnreachable.setValue(std::move(callback)); }

    /// An old setting, kept for compatibility, that nothing consults; true at first.
    bool reachableOnWWAN() const { return m_reachableOnWWAN; }
    void setReachableOnWWAN(bool reachable) { m_reachableOnWWAN = reachable; }
    /// When false, a network that is only cellular counts as `unavailable`; true at first.
    bool allowsCellularConnection() const { return m_allowsCellularConnection; }
    void setAllowsCellularConnection(bool allows) { m_allowsCellularConnection = allows; }
    /// Nothing consults this.
    static constexpr bool isRunningOnDevice = true;

    /// Begins to watch, unless it is watching already. After a failure it is stopped.
    [[nodiscard]] std::optional<ReachabilityError> startNotifier();
    void stopNotifier();
    bool notifierRunning() const { return m_notifierRunning; }

    /// The last flags that were read, if any were.
    std::optional<ReachabilityFlags> flags() const { return m_flags.value(); }
    /// By the last flags; reads them when there are none yet.
    Connection connection();
    /// The flags, one character each, "-" for a clear one: "-R -------".
    QString description() const;

Q_SIGNALS:
    /// The flags have changed. Comes after the callback.
    void reachabilityChanged();

private:
    Reachability(std::shared_ptr<ReachabilityFlagsSource> reachabilityRef, Executor &executor,
                 const DispatchQueue *notificationQueue);

    std::optional<ReachabilityError> setReachabilityFlags();
    void setFlags(ReachabilityFlags flags);
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
