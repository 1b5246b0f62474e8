#pragma once

#include "KestrioKit/Queue/PersistentQueue.h"

/// As many records as the state file ever holds: 25 of each kind. Their visitor is number 7.
KestrioKit::PersistentQueue fullState();
inline constexpr qint64 visitorOfFullState = 7;
