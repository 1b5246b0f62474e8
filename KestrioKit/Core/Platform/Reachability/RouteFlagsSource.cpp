#include "KestrioKit/Core/Platform/Reachability/RouteFlagsSource.h"

#include "KestrioKit/Core/Platform/Reachability/FlagsSubscription.h"
#include "KestrioKit/Core/Platform/Reachability/NetlinkSocket.h"
#include "KestrioKit/Core/Platform/Reachability/NetworkInformationFlagsSource.h"
#include "KestrioKit/Core/Platform/Reachability/RouteMessages.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>

namespace KestrioKit {

namespace {

/// The kernel's maximum size of a response's datagram, in bytes.
constexpr std::size_t datagramSize = 32'768;
/// This allows for about 35,000 routes. Default routes come first in their table, and reading stops
/// at the first live one. A machine with more routes and no default route reaches the internet
/// through them.
constexpr int maximumDatagrams = 64;

using RouteSearch = std::variant<bool, int>;

/// Returns the result if this datagram decides it, or nothing if the next one must be read.
std::optional<RouteSearch> decide(const RouteReply &reply, const NetlinkSocket &socket) {
    const auto isLive = [&socket](int link) {
        return socket.isLinkLive(link);
    };
    if (std::ranges::any_of(reply.defaultLinks, isLive))
        return true;
    if (reply.error != 0)
        return reply.error;
    return reply.finished ? std::optional<RouteSearch>(false) : std::nullopt;
}

RouteSearch findLiveDefaultRoute() {
    // Each search uses its own socket, so that the unread rest of a response is discarded with it.
    const std::variant<NetlinkSocket, int> opened = NetlinkSocket::open();
    const auto *const socket = std::get_if<NetlinkSocket>(&opened);
    if (!socket)
        return std::get<int>(opened);
    if (const std::optional<int> error = socket->requestRoutes())
        return *error;
    std::array<std::byte, datagramSize> buffer;
    for (int count = 0; count < maximumDatagrams; ++count) {
        const auto received = socket->receive(buffer);
        if (const int *const error = std::get_if<int>(&received))
            return *error;
        if (const auto decided = decide(parseRouteReply(std::get<0>(received)), *socket))
            return *decided;
    }
    return true;
}

ReachabilityFlagsSource::Reading readFlags(NetworkInformationFlagsSource &information) {
    const RouteSearch route = findLiveDefaultRoute();
    if (const int *const error = std::get_if<int>(&route))
        return *error;
    if (!std::get<bool>(route))
        return ReachabilityFlags();
    const ReachabilityFlags known = std::get<ReachabilityFlags>(information.flags());
    return (known & ReachabilityFlag::isWWAN) | ReachabilityFlag::reachable;
}

} // namespace

/// Receives the kernel's notifications. Apart from the constructor, it is only used on the
/// executor's thread, where the last reference is released, too.
class RouteFlagsSource::Listener final : public std::enable_shared_from_this<Listener> {
public:
    Listener(NetlinkSocket news, Executor &executor, const Clock &clock, Block announce)
        : m_news(std::move(news)),
          m_executor(executor),
          m_clock(clock),
          m_announce(std::move(announce)) {}

    const NetlinkSocket &news() const { return m_news; }

    void start() {
        m_notifier = std::make_unique<QSocketNotifier>(m_news.descriptor(), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                         [this] { newsArrived(); });
    }

    void stop() { m_notifier.reset(); }

    /// Called when the executor has a new thread, since a notifier belongs to the thread that
    /// created it.
    void changeThread() {
        if (m_notifier)
            start();
    }

private:
    // The kernel notifies before it drops the last route of a change, and changes come in bursts.
    // Listening therefore pauses, and then the routes are read.
    void newsArrived() {
        m_notifier->setEnabled(false);
        m_executor.postAt(m_clock.now() + settlingTime, [weak = weak_from_this()] {
            if (const std::shared_ptr<Listener> listener = weak.lock())
                listener->newsSettled();
        });
    }

    void newsSettled() {
        m_news.discardNews();
        if (m_notifier)
            m_notifier->setEnabled(true);
        m_announce();
    }

    NetlinkSocket m_news;
    Executor &m_executor;
    const Clock &m_clock;
    Block m_announce;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

ReachabilityFlagsSource::Creation RouteFlagsSource::create(Executor &executor, const Clock &clock) {
    std::variant<NetlinkSocket, int> news = NetlinkSocket::open();
    if (const int *const error = std::get_if<int>(&news))
        return *error;
    return std::shared_ptr<ReachabilityFlagsSource>(
        new RouteFlagsSource(std::get<NetlinkSocket>(std::move(news)), executor, clock));
}

RouteFlagsSource::RouteFlagsSource(NetlinkSocket news, Executor &executor, const Clock &clock)
    : m_executor(executor),
      m_subscription(std::make_shared<FlagsSubscription>()),
      m_information(std::make_shared<NetworkInformationFlagsSource>(
          NetworkInformationFlagsSource::Backend::asLoadedByHost)) {
    const Block announce = [subscription = m_subscription, information = m_information] {
        subscription->announce([information] { return readFlags(*information); });
    };
    m_information->setCallback([announce](ReachabilityFlags) { announce(); });
    m_listener = std::make_shared<Listener>(std::move(news), executor, clock, announce);
    m_applicationCreated = ApplicationLifecycle::shared().observe(
        ApplicationLifecycle::Event::created, [&executor, weak = std::weak_ptr(m_listener)] {
            executor.post([weak] {
                if (const std::shared_ptr<Listener> listener = weak.lock())
                    listener->changeThread();
            });
        });
}

RouteFlagsSource::~RouteFlagsSource() {
    // The callback captures its own owner. Clearing it breaks the cycle.
    m_information->setCallback({});
    m_executor.post([listener = std::move(m_listener)] { listener->stop(); });
}

ReachabilityFlagsSource::Reading RouteFlagsSource::flags() {
    return readFlags(*m_information);
}

std::optional<ReachabilityFlagsSource::ErrorCode> RouteFlagsSource::setCallback(Callback callback) {
    m_subscription->setCallback(std::move(callback));
    return std::nullopt;
}

std::optional<ReachabilityFlagsSource::ErrorCode>
RouteFlagsSource::setDispatchQueue(const DispatchQueue *queue) {
    m_subscription->setDispatchQueue(queue);
    m_information->setDispatchQueue(queue);
    const bool wanted = queue != nullptr;
    if (const std::optional<int> error = m_listener->news().setNewsWanted(wanted))
        return error;
    m_executor.post([listener = m_listener, wanted] {
        if (wanted)
            listener->start();
        else
            listener->stop();
    });
    return std::nullopt;
}

} // namespace KestrioKit
