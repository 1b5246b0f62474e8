#pragma once

#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"

#include <QNetworkInformation>

namespace KestrioKit {

/// Provides the flags of `QNetworkInformation`: whether the network is reachable and whether it is
/// cellular. `QNetworkInformation` is only used on the main thread, once its event loop runs. Until
/// then nothing is reachable. Thread-safe.
class NetworkInformationFlagsSource final : public ReachabilityFlagsSource {
public:
    /// Which backend of `QNetworkInformation` is used.
    enum class Backend {
        /// Loads the backend that reports the system's reachability.
        load,
        /// Uses the backend that the host application has loaded by the time its event loop runs.
        /// Without one the network counts as reachable.
        asLoadedByHost,
    };

    explicit NetworkInformationFlagsSource(Backend backend);
    ~NetworkInformationFlagsSource() override;

    Reading flags() override;
    std::optional<ErrorCode> setCallback(Callback callback) override;
    std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *queue) override;

    /// Returns the flags for these values. An unknown reachability counts as reachable, since
    /// sending shows whether it is.
    static ReachabilityFlags flags(QNetworkInformation::Reachability reachability,
                                   QNetworkInformation::TransportMedium medium);

private:
    class Watch;

    std::shared_ptr<Watch> m_watch;
};

} // namespace KestrioKit
