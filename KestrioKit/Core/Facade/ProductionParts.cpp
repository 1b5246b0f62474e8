#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Core/Platform/HTTP/NetworkTransport.h"
#include "KestrioKit/Core/Platform/Threads/LibraryThread.h"
#include "KestrioKit/Core/Platform/Threads/TransientThread.h"

namespace KestrioKit {

const std::shared_ptr<KestrioCore> &KestrioCore::shared() {
    // These objects are never destroyed, because hosts may call while the process ends. The object
    // created last ends first.
    static auto *const fileThread = new TransientThread;
    static auto *const thread = new LibraryThread(Clock::system());
    static auto *const core = new std::shared_ptr(
        make({.clock = Clock::system(),
              .executor = *thread,
              .fileExecutor = *fileThread,
              .transport = std::make_shared<NetworkTransport>(*thread, Clock::system()),
              .makeFlagsSource = [](const QString &host) {
                  return ReachabilityFlagsSource::system(*thread, Clock::system(), host);
              }}));
    return *core;
}

} // namespace KestrioKit
