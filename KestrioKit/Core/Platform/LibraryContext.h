#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Reachability/ReachabilityFlagsSource.h"
#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <functional>
#include <memory>

namespace KestrioKit {

/// Creates the source that reports whether the service on `host` is reachable. Returns an error if
/// the system refuses.
using ReachabilityFlagsSourceFactory =
    std::function<ReachabilityFlagsSource::Creation(const QString &host)>;

/// The library's dependencies on its environment. The clock and the executors must outlive every
/// object that uses this context.
struct LibraryContext {
    /// Provides the time.
    const Clock &clock;
    /// Runs the blocks of every dispatch queue.
    Executor &executor;
    /// Accesses the files. It is separate because `executor` also serves the network, which must
    /// not wait for a disk.
    SerialExecutor &fileExecutor;
    /// Sends the requests.
    std::shared_ptr<URLTransport> transport;
    ReachabilityFlagsSourceFactory makeFlagsSource;
};

} // namespace KestrioKit
