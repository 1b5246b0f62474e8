#pragma once

#include "KestrioKit/Core/Survey/Survey.h"

namespace KestrioKit {

/// Returns the built-in survey, which shows how surveys look: one question of most types. Each call
/// returns it with a new response group. As in faulty surveys, its second and third question share
/// a name, and its options have no ids.
Survey debugSurvey();

} // namespace KestrioKit
