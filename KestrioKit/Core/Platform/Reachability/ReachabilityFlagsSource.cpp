#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"

#include <QString>
#include <QtGlobal>

// Android does not let applications read the kernel's routes.
#if defined(Q_OS_LINUX) && !defined(Q_OS_ANDROID)
#include "KestrioKit/Core/Platform/Reachability/RouteFlagsSource.h"
#define KESTRIO_ROUTE_FLAGS_SOURCE
#else
#include "KestrioKit/Core/Platform/Reachability/NetworkInformationFlagsSource.h"
#endif

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

class ConstantFlagsSource final : public ReachabilityFlagsSource {
public:
    explicit ConstantFlagsSource(ReachabilityFlags flags) : m_flags(flags) {}

    Reading flags() override { return m_flags; }
    std::optional<ErrorCode> setCallback(Callback) override { return std::nullopt; }
    std::optional<ErrorCode> setDispatchQueue(const DispatchQueue *) override {
        return std::nullopt;
    }

private:
    ReachabilityFlags m_flags;
};

} // namespace

ReachabilityFlagsSource::Creation
ReachabilityFlagsSource::system([[maybe_unused]] Executor &executor,
                                [[maybe_unused]] const Clock &clock, const QString &serviceHost) {
    if (serviceHost == "localhost"_L1) {
        using enum ReachabilityFlag;
        return std::make_shared<ConstantFlagsSource>(reachable | isLocalAddress | isDirect);
    }
#ifdef KESTRIO_ROUTE_FLAGS_SOURCE
    return RouteFlagsSource::create(executor, clock);
#else
    using Backend = NetworkInformationFlagsSource::Backend;
    return std::make_shared<NetworkInformationFlagsSource>(Backend::load);
#endif
}

} // namespace KestrioKit
