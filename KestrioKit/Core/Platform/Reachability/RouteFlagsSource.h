#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"

namespace KestrioKit {

class FlagsSubscription;
class NetlinkSocket;
class NetworkInformationFlagsSource;

/// Provides the flags on Linux. `reachable` is set while there is an IPv4 or IPv6 default route
/// over an interface that is up and running and is not the loopback. Otherwise no flag is set.
/// `isWWAN` comes from the `QNetworkInformation` backend that the host application has loaded, if
/// any. Thread-safe.
class RouteFlagsSource final : public ReachabilityFlagsSource {
public:
    /// Returns a source, or an error if the socket to the kernel's routes cannot be opened, for
    /// example in a sandbox. `executor` must run an event loop, use `clock` and outlive the source.
    static Creation create(Executor &executor, const Clock &clock);
    ~RouteFlagsSource() override;

    /// Queries the kernel, which usually takes less than 0.1 ms.
    Reading flags() override;
    std::optional<ErrorCode> setCallback(Callback callback) override;
    /// Delivers changes on a copy of `queue`, about `settlingTime` after they happen. Several
    /// changes in a row are delivered as one.
    std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *queue) override;

    /// The delay between a change and its delivery, in seconds.
    static constexpr double settlingTime = 0.02;

private:
    class Listener;

    RouteFlagsSource(NetlinkSocket news, Executor &executor, const Clock &clock);

    Executor &m_executor;
    std::shared_ptr<FlagsSubscription> m_subscription;
    std::shared_ptr<NetworkInformationFlagsSource> m_information;
    std::shared_ptr<Listener> m_listener;
    ApplicationLifecycle::Observation m_applicationCreated;
};

} // namespace KestrioKit
