#include "KestrioKit/Core/Queue/Reachability.h"

#include <array>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// Stands for the internet as a whole.
constexpr QLatin1StringView watchedAddress("0.0.0.0");

/// Captured by the system's callback, so that the system does not keep the monitor alive.
class ReachabilityWeakifier {
public:
    explicit ReachabilityWeakifier(std::weak_ptr<Reachability> reachability)
        : m_reachability(std::move(reachability)) {}

    std::shared_ptr<Reachability> reachability() const { return m_reachability.lock(); }

private:
    std::weak_ptr<Reachability> m_reachability;
};

Reachability::Connection connectionOf(ReachabilityFlags flags, bool allowsCellularConnection) {
    using Connection = Reachability::Connection;
    using enum ReachabilityFlag;
    if (!flags.testFlag(reachable))
        return Connection::unavailable;
    if (flags.testFlag(isWWAN))
        return allowsCellularConnection ? Connection::cellular : Connection::unavailable;
    const bool connectsByItself = flags.testAnyFlags(connectionOnTraffic | connectionOnDemand) &&
                                  !flags.testFlag(interventionRequired);
    if (connectsByItself || !flags.testFlag(connectionRequired))
        return Connection::wifi;
    return Connection::unavailable;
}

struct FlagCharacter {
    ReachabilityFlag flag;
    char16_t character;
};

constexpr std::array wayCharacters{FlagCharacter{ReachabilityFlag::isWWAN, u'W'},
                                   FlagCharacter{ReachabilityFlag::reachable, u'R'}};
constexpr std::array detailCharacters{
    FlagCharacter{ReachabilityFlag::connectionRequired, u'c'},
    FlagCharacter{ReachabilityFlag::transientConnection, u't'},
    FlagCharacter{ReachabilityFlag::interventionRequired, u'i'},
    FlagCharacter{ReachabilityFlag::connectionOnTraffic, u'C'},
    FlagCharacter{ReachabilityFlag::connectionOnDemand, u'D'},
    FlagCharacter{ReachabilityFlag::isLocalAddress, u'l'},
    FlagCharacter{ReachabilityFlag::isDirect, u'd'},
};

template <typename Characters>
QString flagsText(ReachabilityFlags flags, const Characters &characters) {
    QString text;
    for (const FlagCharacter &entry : characters)
        text += flags.testFlag(entry.flag) ? QChar(entry.character) : u'-';
    return text;
}

} // namespace

Reachability::Creation
Reachability::create(const ReachabilityFlagsSource::Creation &reachabilityRef, Executor &executor,
                     const DispatchQueue *notificationQueue) {
    using Reason = ReachabilityError::Reason;
    if (const auto *const code = std::get_if<ReachabilityFlagsSource::ErrorCode>(&reachabilityRef))
        return ReachabilityError{Reason::failedToCreateWithAddress, *code, watchedAddress};
    return std::shared_ptr<Reachability>(
        new Reachability(std::get<0>(reachabilityRef), executor, notificationQueue));
}

Reachability::Reachability(std::shared_ptr<ReachabilityFlagsSource> reachabilityRef,
                           Executor &executor, const DispatchQueue *notificationQueue)
    : m_reachabilityRef(std::move(reachabilityRef)),
      m_reachabilitySerialQueue(u"example.kestrio.reachability"_s, executor),
      m_notificationQueue(notificationQueue ? std::optional(*notificationQueue) : std::nullopt) {}

Reachability::~Reachability() {
    stopNotifier();
}

std::optional<ReachabilityError> Reachability::startNotifier() {
    if (m_notifierRunning)
        return std::nullopt;
    const auto keepAlive = shared_from_this();
    using Reason = ReachabilityError::Reason;
    const auto flagsChanged =
        [weakifier = ReachabilityWeakifier(weak_from_this())](ReachabilityFlags flags) {
            if (const std::shared_ptr<Reachability> monitor = weakifier.reachability())
                monitor->setFlags(flags);
        };
    if (const auto code = m_reachabilityRef->setCallback(flagsChanged)) {
        stopNotifier();
        return ReachabilityError{Reason::unableToSetCallback, *code, {}};
    }
    if (const auto code = m_reachabilityRef->setDispatchQueue(&m_reachabilitySerialQueue)) {
        stopNotifier();
        return ReachabilityError{Reason::unableToSetDispatchQueue, *code, {}};
    }
    if (std::optional<ReachabilityError> error = setReachabilityFlags())
        return error;
    m_notifierRunning = true;
    return std::nullopt;
}

void Reachability::stopNotifier() {
    m_reachabilityRef->setCallback({});
    m_reachabilityRef->setDispatchQueue(nullptr);
    m_notifierRunning = false;
}

Reachability::Connection Reachability::connection() {
    const auto keepAlive = shared_from_this();
    if (!m_flags.value())
        setReachabilityFlags();
    return connectionOf(m_flags.value().value_or(ReachabilityFlags()), m_allowsCellularConnection);
}

QString Reachability::description() const {
    const std::optional<ReachabilityFlags> flags = m_flags.value();
    if (!flags)
        return u"unavailable flags"_s;
    return flagsText(*flags, wayCharacters) + u' ' + flagsText(*flags, detailCharacters);
}

std::optional<ReachabilityError> Reachability::setReachabilityFlags() {
    std::optional<ReachabilityError> error;
    m_reachabilitySerialQueue.sync([this, &error] {
        const ReachabilityFlagsSource::Reading reading = m_reachabilityRef->flags();
        if (const auto *const flags = std::get_if<ReachabilityFlags>(&reading)) {
            setFlags(*flags);
            return;
        }
        stopNotifier();
        const auto code = std::get<ReachabilityFlagsSource::ErrorCode>(reading);
        error = ReachabilityError{ReachabilityError::Reason::unableToGetFlags, code, {}};
    });
    return error;
}

void Reachability::setFlags(ReachabilityFlags flags) {
    const std::optional<ReachabilityFlags> previous =
        m_flags.mutate([flags](auto &value) { return std::exchange(value, flags); });
    if (previous != flags)
        announceChange();
}

void Reachability::announceChange() {
    if (!m_notificationQueue) {
        notify();
        return;
    }
    m_notificationQueue->async([weak = weak_from_this()] {
        if (const std::shared_ptr<Reachability> monitor = weak.lock())
            monitor->notify();
    });
}

void Reachability::notify() {
    const bool reachable = connection() != Connection::unavailable;
    if (const Callback callback = reachable ? m_whenReachable.value() : m_whenUnreachable.value())
        callback(*this);
    Q_EMIT reachabilityChanged();
}

} // namespace KestrioKit
