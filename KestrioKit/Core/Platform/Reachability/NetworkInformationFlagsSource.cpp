#include "KestrioKit/Core/Platform/Reachability/NetworkInformationFlagsSource.h"

#include "KestrioKit/Core/Platform/Reachability/FlagsSubscription.h"

namespace KestrioKit {

/// Observes `QNetworkInformation` on the main thread. Other threads only use `flags` and
/// `subscription`.
class NetworkInformationFlagsSource::Watch final : public std::enable_shared_from_this<Watch> {
public:
    Atomic<ReachabilityFlags> flags;
    FlagsSubscription subscription;

    void begin(Backend backend) {
        if (backend == Backend::load)
            QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability);
        if (QNetworkInformation *const information = QNetworkInformation::instance()) {
            const auto update = [weak = weak_from_this()] {
                if (const std::shared_ptr<Watch> watch = weak.lock())
                    watch->update();
            };
            using Information = QNetworkInformation;
            QObject::connect(information, &Information::reachabilityChanged, information, update);
            QObject::connect(information, &Information::transportMediumChanged, information,
                             update);
        }
        update();
    }

private:
    void update() {
        const QNetworkInformation *const information = QNetworkInformation::instance();
        flags.setValue(information
                           ? NetworkInformationFlagsSource::flags(information->reachability(),
                                                                  information->transportMedium())
                           : ReachabilityFlag::reachable);
        subscription.announce([watch = shared_from_this()] { return watch->flags.value(); });
    }
};

NetworkInformationFlagsSource::NetworkInformationFlagsSource(Backend backend)
    : m_watch(std::make_shared<Watch>()) {
    DispatchQueue::main().async([weak = std::weak_ptr(m_watch), backend] {
        if (const std::shared_ptr<Watch> watch = weak.lock())
            watch->begin(backend);
    });
}

NetworkInformationFlagsSource::~NetworkInformationFlagsSource() = default;

ReachabilityFlagsSource::Reading NetworkInformationFlagsSource::flags() {
    return m_watch->flags.value();
}

std::optional<ReachabilityFlagsSource::ErrorCode>
NetworkInformationFlagsSource::setCallback(Callback callback) {
    m_watch->subscription.setCallback(std::move(callback));
    return std::nullopt;
}

std::optional<ReachabilityFlagsSource::ErrorCode>
NetworkInformationFlagsSource::setDispatchQueue(const DispatchQueue *queue) {
    m_watch->subscription.setDispatchQueue(queue);
    return std::nullopt;
}

ReachabilityFlags
NetworkInformationFlagsSource::flags(QNetworkInformation::Reachability reachability,
                                     QNetworkInformation::TransportMedium medium) {
    if (reachability == QNetworkInformation::Reachability::Disconnected ||
        reachability == QNetworkInformation::Reachability::Local)
        return {};
    ReachabilityFlags flags = ReachabilityFlag::reachable;
    flags.setFlag(ReachabilityFlag::isWWAN,
                  medium == QNetworkInformation::TransportMedium::Cellular);
    return flags;
}

} // namespace KestrioKit
