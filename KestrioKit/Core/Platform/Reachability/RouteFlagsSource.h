#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"

namespace KestrioKit {

class FlagsSubscription;
class NetlinkSocket;
class NetworkInformationFlagsSource;

/// The flags on Linux: `reachable` while there is a default route, IPv4 or IPv6, over a link other
/// than the loopback that is up and running; nothing otherwise. `isWWAN` comes from the
/// `QNetworkInformation` that the host application has loaded, if it has.
class RouteFlagsSource final : public ReachabilityFlagsSource {
public:
    /// Fails when the kernel's routes cannot be had, in a sandbox say. `executor`, which runs an
    /// event loop and goes by `clock`, outlives the source.
    static Creation create(Executor &executor, const Clock &clock);
    ~RouteFlagsSource() override;

    /// Asks the kernel, usually in less than a tenth of a millisecond.
    Reading flags() override;
    std::optional<ErrorCode> setCallback(Callback callback) override;
    /// Changes are delivered some `settlingTime` after they happened, many in a row as one.
    std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *queue) override;

    /// In seconds.
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
