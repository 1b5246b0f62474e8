#pragma once

#include <chrono>
#include <functional>

namespace KestrioKit {

inline constexpr std::chrono::seconds patience{20};

/// Runs the calling thread's event loop until `condition` holds. False when it does not in time.
bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit = patience);
/// Runs it for so long.
void pause(std::chrono::milliseconds time);

} // namespace KestrioKit
