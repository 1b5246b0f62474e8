#pragma once

#include "KestrioKit/Platform/Executor.h"

namespace KestrioKit {

/// A public call that was made too early.
struct HeldCall {
    /// Makes it again.
    Block call;
};

} // namespace KestrioKit
