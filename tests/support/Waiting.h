#pragma once

#include <chrono>
#include <functional>

namespace KestrioKit {

/// How long tests wait for what must happen, on a machine that has much else to do.
inline constexpr std::chrono::seconds patience{120};

/// Runs the calling thread's event loop until `condition` holds. False when it does not in time.
bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit = patience);
/// Runs it for so long.
void pause(std::chrono::milliseconds time);

} // namespace KestrioKit
