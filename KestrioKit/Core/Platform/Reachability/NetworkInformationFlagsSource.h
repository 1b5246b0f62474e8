#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"

#include <QNetworkInformation>

namespace KestrioKit {

/// The flags as `QNetworkInformation` has them: whether the network can be reached, and whether it
/// is cellular. `QNetworkInformation` is only used on the main thread, from when its event loop
/// runs; until then nothing is reachable.
class NetworkInformationFlagsSource final : public ReachabilityFlagsSource {
public:
    enum class Backend {
        /// Load the one that knows the system's reachability.
        load,
        /// Use the one that the host application has loaded by then, if any.
        asLoadedByHost,
    };

    explicit NetworkInformationFlagsSource(Backend backend);
    ~NetworkInformationFlagsSource() override;

    Reading flags() override;
    std::optional<ErrorCode> setCallback(Callback callback) override;
    std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *queue) override;

    /// What is not known counts as reachable: sending will show.
    static ReachabilityFlags flags(QNetworkInformation::Reachability reachability,
                                   QNetworkInformation::TransportMedium medium);

private:
    class Watch;

    std::shared_ptr<Watch> m_watch;
};

} // namespace KestrioKit
