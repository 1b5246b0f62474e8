#pragma once

#include "KestrioKit/Core/Survey/Survey.h"

namespace KestrioKit {

/// The survey that is built in, to see how surveys look: one question of most types. Each time of
/// another response group. Its second and third question share a name, and its options have no
/// ids, as in surveys that were put together badly.
Survey debugSurvey();

} // namespace KestrioKit
