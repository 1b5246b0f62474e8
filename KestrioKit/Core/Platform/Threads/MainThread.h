#pragma once

#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <memory>

namespace KestrioKit {

/// Returns whether the calling thread is the application object's thread. Returns false if there is
/// no application object.
bool isOnMainThread();

/// Runs `block` on the main thread: before returning if called there, otherwise later. Thread-safe.
void onMain(const Block &block);

/// Returns a copy of the host's handler, or null if the handler is empty. The copy is destroyed on
/// the main thread, because its captures may belong there.
template <typename Handler>
std::shared_ptr<const Handler> keptForMain(const Handler &handler) {
    if (!handler)
        return nullptr;
    return {new Handler(handler), [](const Handler *kept) {
                DispatchQueue::main().async([kept] { delete kept; });
            }};
}

/// Calls the handler on the main thread, later, never within this call. Does nothing if it is null.
template <typename Handler, typename... Arguments>
void callOnMain(const std::shared_ptr<const Handler> &handler, const Arguments &...arguments) {
    if (handler)
        DispatchQueue::main().async([handler, arguments...] { (*handler)(arguments...); });
}

} // namespace KestrioKit
