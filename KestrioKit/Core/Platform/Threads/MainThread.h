#pragma once

#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <memory>

namespace KestrioKit {

/// Whether the calling thread is the application object's. False while there is none.
bool isOnMainThread();

/// Runs `block` on the main thread: within this call when it is made there, otherwise later.
void onMain(const Block &block);

/// A copy of the host's handler that is destroyed on the main thread, as what it captures may
/// belong there. Null when the handler is empty.
template <typename Handler>
std::shared_ptr<const Handler> keptForMain(const Handler &handler) {
    if (!handler)
        return nullptr;
    return {new Handler(handler), [](const Handler *kept) {
                DispatchQueue::main().async([kept] { delete kept; });
            }};
}

/// Has the handler called on the main thread, later. Nothing when it is null.
template <typename Handler, typename... Arguments>
void callOnMain(const std::shared_ptr<const Handler> &handler, const Arguments &...arguments) {
    if (handler)
        DispatchQueue::main().async([handler, arguments...] { (*handler)(arguments...); });
}

} // namespace KestrioKit
