#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"
#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <functional>
#include <memory>

namespace KestrioKit {

/// Makes what tells whether the service on `host` can be reached, unless the system refuses.
using ReachabilityFlagsSourceFactory =
    std::function<ReachabilityFlagsSource::Creation(const QString &host)>;

/// What the library takes from the world around it. Clock and executors outlive everything that is
/// made with this.
struct LibraryContext {
    const Clock &clock;
    /// Runs the blocks of every dispatch queue.
    Executor &executor;
    /// Writes the files: the other one also serves the network, which must not wait for disks.
    SerialExecutor &fileExecutor;
    std::shared_ptr<URLTransport> transport;
    ReachabilityFlagsSourceFactory makeFlagsSource;
};

} // namespace KestrioKit
